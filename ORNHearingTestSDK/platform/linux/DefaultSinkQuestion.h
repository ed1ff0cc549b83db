#pragma once

#include <functional>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/linux/PulseConnection.h>

namespace orn {

/// Asks the server for its default output over a connection of its own, which lives for one question.
///
/// PipeWire 0.3 may get into a state in which it tells of a new default output only to connections made afterwards. A
/// connection made before is then told the old one for as long as it lives, whatever it asks.
class DefaultSinkQuestion {
 public:
  /// The sink's name, empty where the server has none; nothing where the server could not be asked.
  using Answer = std::function<void(std::optional<std::string> sink)>;

  explicit DefaultSinkQuestion(PulseConnection& connection) : connection_(connection) {}
  DefaultSinkQuestion(const DefaultSinkQuestion&) = delete;
  DefaultSinkQuestion& operator=(const DefaultSinkQuestion&) = delete;

  /// With the lock held, once no earlier question is open. The answer comes on the connection's thread.
  void ask(Answer answer);

  /// Drops an open question, whose answer then never comes; with the lock held. To be called before this object is
  /// destroyed.
  void cancel();

 private:
  void stateChanged();
  void answer(std::optional<std::string> sink);

  PulseConnection& connection_;
  pa_context* context_ = nullptr;
  Answer answer_;
};

}  // namespace orn
