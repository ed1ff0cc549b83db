#pragma once

#include <memory>
#include <utility>

#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>

namespace orn {

/// A real run loop on which time passes faster than on the wall, so that a real sound server can be used for a whole
/// test without its pauses.
class HastyRunLoop final : public RunLoop {
 public:
  explicit HastyRunLoop(int timesReal) : timesReal_(timesReal) {}

  /// Runs until a condition holds that the loop's calls bring about, or for that long on the wall. Tells whether it
  /// holds.
  template <class Condition>
  bool runUntil(Condition holds, std::chrono::seconds longest = std::chrono::seconds(60)) {
    const auto watch = real_.scheduledTimer(std::chrono::milliseconds(2), [&] {
      if (holds()) real_.stop();
    });
    const auto limit = real_.scheduledTimer(longest, [this] { real_.stop(); });
    real_.run();
    watch->invalidate();
    limit->invalidate();
    return holds();
  }

  void runFor(std::chrono::milliseconds time) {
    const auto end = real_.now() + time;
    runUntil([&] { return real_.now() >= end; });
  }

  std::chrono::nanoseconds now() const override { return real_.now() * timesReal_; }
  std::chrono::system_clock::time_point date() const override { return real_.date(); }
  std::shared_ptr<Timer> scheduledTimer(std::chrono::nanoseconds interval, Action action) override {
    return std::make_shared<HastyTimer>(real_.scheduledTimer(interval / timesReal_, std::move(action)), timesReal_);
  }
  void performAfterDelay(std::chrono::nanoseconds delay, Action action) override {
    real_.performAfterDelay(delay / timesReal_, std::move(action));
  }
  void dispatchAsync(Action action) override { real_.dispatchAsync(std::move(action)); }

 private:
  struct HastyTimer final : Timer {
    HastyTimer(std::shared_ptr<Timer> timer, int times) : real(std::move(timer)), timesReal(times) {}
    void setFireDate(std::chrono::nanoseconds time) override {
      real->setFireDate(time == distantFuture ? time : time / timesReal);
    }
    void invalidate() override { real->invalidate(); }

    std::shared_ptr<Timer> real;
    int timesReal;
  };

  LinuxRunLoop real_;
  int timesReal_;
};

}  // namespace orn
