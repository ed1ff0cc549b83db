#pragma once

#include <termios.h>

#include <functional>
#include <memory>
#include <optional>
#include <thread>

#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

/// Tells of keys and of the signals that end a program (SIGINT, SIGTERM, SIGHUP), on the main thread. For as long as it
/// lives, a terminal hands over each key at once and does not show it.
class TerminalInput {
 public:
  /// Call holdEndingSignals() before any other thread is started.
  explicit TerminalInput(std::shared_ptr<RunLoop> loop);
  ~TerminalInput();
  TerminalInput(const TerminalInput&) = delete;
  TerminalInput& operator=(const TerminalInput&) = delete;

  /// Called on the main thread; may be empty.
  std::function<void()> onKey, onInterrupt;

 private:
  void watch();
  void tell(std::function<void()> TerminalInput::*what);

  std::shared_ptr<RunLoop> loop_;
  std::optional<termios> before_;
  int signals_ = -1;
  int end_ = -1;
  std::shared_ptr<TerminalInput*> self_;
  std::thread thread_;
};

}  // namespace orn
