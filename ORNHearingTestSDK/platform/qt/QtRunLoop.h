#pragma once

#include <chrono>
#include <memory>

#include <ORNHearingTestSDK/platform/DispatchQueue.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/TimerQueue.h>

class QSocketNotifier;
class QTimer;

namespace orn {

/// A run loop in real time on the event loop of Qt, which the program runs. Made after the QCoreApplication, on its
/// thread, and gone before it. It makes one call at each turn of that loop, so that the screen stays alive between
/// calls; nested loops, such as a dialog's, make calls as well.
class ORN_EXPORT QtRunLoop final : public RunLoop {
 public:
  /// Throws std::system_error if the system has no descriptor left.
  QtRunLoop();
  ~QtRunLoop() override;

  std::chrono::nanoseconds now() const override;
  std::chrono::system_clock::time_point date() const override;
  std::shared_ptr<Timer> scheduledTimer(std::chrono::nanoseconds interval, Action action) override;
  void performAfterDelay(std::chrono::nanoseconds delay, Action action) override;
  void dispatchAsync(Action action) override;

 private:
  class WakeUp;

  void turn();
  void armTimer();

  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::unique_ptr<WakeUp> wakeUp_;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::unique_ptr<QTimer> timer_;
  DispatchQueue dispatched_;
  TimerQueue timers_;
};

}  // namespace orn
