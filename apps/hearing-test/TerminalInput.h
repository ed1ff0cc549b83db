#pragma once

#include <termios.h>

#include <functional>
#include <memory>
#include <optional>
#include <thread>

#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

/// Keys and the signals that end a program (SIGINT, SIGTERM, SIGHUP), told on the main thread. A terminal gives each
/// key at once and does not show it, until this goes.
class TerminalInput {
 public:
  /// Call holdEndingSignals() before any other thread is started.
  explicit TerminalInput(std::shared_ptr<RunLoop> loop);
  ~TerminalInput();
  TerminalInput(const TerminalInput&) = delete;
  TerminalInput& operator=(const TerminalInput&) = delete;

  /// Main thread; an empty one is not called.
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
