#pragma once

#include <optional>

#include <ORNHearingTestSDK/platform/QueuedRunLoop.h>

namespace orn {

/// A run loop on the page's event loop, by the page's timers; it can't be run from within a call. Main thread.
class WebRunLoop final : public QueuedRunLoop {
 public:
  WebRunLoop();
  ~WebRunLoop() override;

  /// Makes the calls that are due, for some milliseconds at most, and asks the page for the next turn. The page's
  /// timers call it.
  void turn();

 private:
  void wake() override;
  void dueChanged() override;
  void askFor(std::chrono::nanoseconds time);

  int timer_ = 0;  // the page's timer, one at most
  std::chrono::nanoseconds asked_ = distantFuture;
  bool isInTurn_ = false;
};

}  // namespace orn
