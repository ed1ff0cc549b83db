#pragma once

#include <condition_variable>
#include <mutex>

#include <ORNHearingTestSDK/platform/DispatchQueue.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/TimerQueue.h>

namespace orn {

/// A run loop in real time, on a condition variable and the steady clock. run() is for the main thread; stop(),
/// dispatchAsync(), now() and date() for any.
class ORN_EXPORT LinuxRunLoop final : public RunLoop {
 public:
  LinuxRunLoop();
  ~LinuxRunLoop() override;

  /// Makes calls as they fall due until stop(). Not to be called from within a call.
  void run();

  /// Ends run() after the call that is going on; ends the next run() at once if none is going on.
  void stop();

  std::chrono::nanoseconds now() const override;
  std::chrono::system_clock::time_point date() const override;
  std::shared_ptr<Timer> scheduledTimer(std::chrono::nanoseconds interval, Action action) override;
  void performAfterDelay(std::chrono::nanoseconds delay, Action action) override;
  void dispatchAsync(Action action) override;

 private:
  /// Makes one call, so that stop() ends run() after it; false if none is due.
  bool makeDueCall();
  void waitForWork();
  void wake();

  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::mutex mutex_;
  std::condition_variable work_;
  bool hasWork_ = false;
  bool stopped_ = false;
  DispatchQueue dispatched_;
  TimerQueue timers_;
};

}  // namespace orn
