#include "hearing-service/Misbehaviour.h"

#include <array>
#include <charconv>
#include <utility>

namespace orn::service {
namespace {

using Kind = Misbehaviour::Kind;

constexpr std::array<std::pair<std::string_view, Kind>, 6> kKinds = {{{"status500", Kind::Status500},
                                                                      {"nobody", Kind::NoBody},
                                                                      {"garbage", Kind::Garbage},
                                                                      {"half", Kind::Half},
                                                                      {"huge", Kind::Huge},
                                                                      {"refuse", Kind::Refuse}}};
constexpr std::string_view kDelay = "delay=";
constexpr unsigned kLongestDelay = 600'000;

std::optional<Misbehaviour> delayOf(std::string_view text) {
  unsigned milliseconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), milliseconds);
  if (error != std::errc{} || end != text.data() + text.size() || milliseconds > kLongestDelay) return std::nullopt;
  return Misbehaviour{Kind::Delay, std::chrono::milliseconds(milliseconds)};
}

}  // namespace

std::optional<Misbehaviour> misbehaviourNamed(std::string_view name) {
  if (name.starts_with(kDelay)) return delayOf(name.substr(kDelay.size()));
  for (const auto& [known, kind] : kKinds) {
    if (known == name) return Misbehaviour{kind, {}};
  }
  return std::nullopt;
}

}  // namespace orn::service
