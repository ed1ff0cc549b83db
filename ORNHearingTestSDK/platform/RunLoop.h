#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// A repeating timer of a RunLoop. Main thread only.
class ORN_EXPORT Timer {
 public:
  virtual ~Timer() = default;

  /// Moves the next firing; further firings follow at the interval from that time. A time that has passed fires at the
  /// loop's next turn, never within this call; from within the timer's own action, it counts when the action has
  /// ended. Nothing happens after invalidate().
  virtual void setFireDate(std::chrono::nanoseconds time) = 0;

  /// Ends the timer for good and releases its action, also from within that action.
  virtual void invalidate() = 0;
};

/// The main thread's loop: its clock, its timers and delayed calls, and the queue by which other threads reach it.
///
/// Due calls run one at a time on the thread that runs the loop, ordered by due time and, at the same time, by age.
/// Calls handed over by dispatchAsync() run before timers that are due. An action may use the loop freely, and none is
/// ever called from within the operation that takes it. Where an action itself runs the loop, as a dialog does, all
/// other calls go on, but a timer does not fire again until its own action has ended. A loop that goes releases all
/// actions; a timer that outlives it does nothing.
class ORN_EXPORT RunLoop {
 public:
  using Action = std::function<void()>;  ///< What the loop calls.

  /// A time that never arrives: a timer with this fire date is parked.
  static constexpr std::chrono::nanoseconds distantFuture = std::chrono::nanoseconds::max();

  virtual ~RunLoop() = default;

  /// Time since the loop was made; steady, whatever happens to the wall clock. Any thread.
  virtual std::chrono::nanoseconds now() const = 0;

  /// The wall clock. Any thread.
  virtual std::chrono::system_clock::time_point date() const = 0;

  /// Starts a repeating timer whose first firing is one interval from now. Firings missed while an action or the whole
  /// process was held up are made up for by one, and the next one keeps the rhythm. The loop holds the action until
  /// invalidate(); dropping the returned pointer does not end the timer. An interval below a nanosecond counts as one.
  /// Main thread.
  virtual std::shared_ptr<Timer> scheduledTimer(std::chrono::nanoseconds interval, Action action) = 0;

  /// Makes one call after a delay, 0 or below meaning the loop's next turn; it can't be cancelled. Main thread.
  virtual void performAfterDelay(std::chrono::nanoseconds delay, Action action) = 0;

  /// Makes one call on the main thread, in the order of the dispatches, and wakes a loop that waits. Any thread.
  virtual void dispatchAsync(Action action) = 0;
};

}  // namespace orn
