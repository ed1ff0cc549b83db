#pragma once

#include <thread>

#include <ORNHearingTestSDK/platform/QueuedRunLoop.h>

namespace orn {

/// A real run loop on which time passes faster than on the wall, so that a real sound server can be used for a whole
/// test without its pauses.
class HastyRunLoop final : public QueuedRunLoop {
 public:
  explicit HastyRunLoop(int timesReal) : timesReal_(timesReal) {}

  std::chrono::nanoseconds now() const override { return onTheWall() * timesReal_; }

  /// Runs until a condition holds that the loop's calls bring about, or for that long on the wall. Tells whether it
  /// holds.
  template <class Condition>
  bool runUntil(Condition holds, std::chrono::seconds longest = std::chrono::seconds(60)) {
    const auto end = onTheWall() + longest;
    while (true) {
      while (makeDueCall()) {
      }
      if (holds()) return true;
      if (onTheWall() > end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  void runFor(std::chrono::milliseconds time) {
    const auto end = onTheWall() + time;
    runUntil([&] { return onTheWall() >= end; });
  }

 private:
  std::chrono::nanoseconds onTheWall() const { return QueuedRunLoop::now(); }

  int timesReal_;
};

}  // namespace orn
