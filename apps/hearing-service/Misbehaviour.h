#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace orn::service {

/// A way for every reply to go wrong, so that clients can be tested.
struct Misbehaviour {
  enum class Kind {
    None,
    Delay,      ///< The correct reply, late.
    Status500,  ///< The correct body under status 500.
    NoBody,     ///< An empty body.
    Garbage,    ///< A body that is neither JSON nor UTF-8.
    Half,       ///< The correct headers, half the body, then the end of the connection.
    Huge,       ///< The correct body, padded with white space to 20 MiB.
    Refuse,     ///< A refusal; the request is not carried out.
  };
  Kind kind = Kind::None;
  std::chrono::milliseconds delay{};  ///< For Delay alone.
};

/// From "delay=MS" (up to ten minutes), "status500", "nobody", "garbage", "half", "huge" or "refuse"; nothing if it is
/// none of these.
std::optional<Misbehaviour> misbehaviourNamed(std::string_view name);

}  // namespace orn::service
