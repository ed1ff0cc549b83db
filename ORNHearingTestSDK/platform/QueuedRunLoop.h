#pragma once

#include <chrono>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/platform/TimerQueue.h>

namespace orn {

/// A run loop without its waiting: the calls that are due, in their order, and a clock in real time. A class that
/// derives from it runs a loop of its own: it makes calls by makeDueCall(), one at a time, and waits for nextDue() or
/// wake().
class ORN_EXPORT QueuedRunLoop : public RunLoop {
 public:
  QueuedRunLoop();
  ~QueuedRunLoop() override;

  std::chrono::nanoseconds now() const override;
  std::chrono::system_clock::time_point date() const override;
  std::shared_ptr<Timer> scheduledTimer(std::chrono::nanoseconds interval, Action action) final;
  void performAfterDelay(std::chrono::nanoseconds delay, Action action) final;
  void dispatchAsync(Action action) final;

 protected:
  /// Makes the first call that is due, which may run the loop in turn; false if there is none. Main thread.
  bool makeDueCall();

  /// The same for calls that were handed over, which come first.
  bool makeDispatchedCall();

  /// When the first timer or delayed call is due; nothing if only parked timers are left. Main thread.
  std::optional<std::chrono::nanoseconds> nextDue() const { return timers_.nextDue(); }

 private:
  /// A call has been handed over. Any thread.
  virtual void wake() {}

  /// A timer or delayed call has been added or moved, so that nextDue() may be another. Main thread.
  virtual void dueChanged() {}

  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::mutex mutex_;
  std::deque<Action> dispatched_;
  TimerQueue timers_;
};

}  // namespace orn
