#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

/// Timers and delayed calls in the order in which a run loop makes them. One thread only; knows no clock.
class ORN_EXPORT TimerQueue {
 public:
  using Time = std::chrono::nanoseconds;  ///< Since the loop was made.

  /// `changed` is called whenever a call has been added or has been given another time; never once the queue goes.
  explicit TimerQueue(std::function<void()> changed = {});
  ~TimerQueue();
  TimerQueue(const TimerQueue&) = delete;
  TimerQueue& operator=(const TimerQueue&) = delete;

  /// One that repeats; its first firing is an interval from now.
  std::shared_ptr<Timer> addTimer(Time now, Time interval, RunLoop::Action action);
  void addCall(Time now, Time delay, RunLoop::Action action);  ///< One call after a delay.

  /// When the next call is due; nothing if only parked timers are left.
  std::optional<Time> nextDue() const;

  /// Makes the first call that is due, and tells whether there was one.
  bool fireNext(Time now);

 private:
  class QueuedTimer;
  struct Calls;
  std::shared_ptr<Calls> calls_;
};

}  // namespace orn
