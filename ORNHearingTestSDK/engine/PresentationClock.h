#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include <ORNHearingTestSDK/engine/HoldUpWatch.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

/// The clock of a timed test: a repeating timer whose interval is the time that each tone gets, and what a hold-up of
/// the main thread takes away from a tone. Main thread.
class ORN_EXPORT PresentationClock {
 public:
  /// From a settled threshold to the next frequency's tone.
  static constexpr std::chrono::seconds kUntilNextFrequency{1};

  /// How late a tick may be, half of the shortest tone, before nobody knows what was heard.
  static constexpr std::chrono::seconds kLongestHoldUp{2};

  /// How late any call on a busy main thread may be.
  static constexpr std::chrono::milliseconds kLongestDelay{100};

  /// Time of a presentation in seconds: the user default "BOFANGSHICHANG" where it is above 4, else 4.
  static std::int32_t getPlayTime();

  /// The timer, made with the action if there is none. The action holds the session, so the session lives until end().
  const std::shared_ptr<Timer>& autoPlayTimer(const RunLoop::Action& timerUpdate);

  void tickAfterPlayTime(const RunLoop::Action& timerUpdate);   ///< The next tick comes a presentation time from now.
  void tickNow(const RunLoop::Action& timerUpdate);             ///< The next tick comes at the loop's next turn.
  void park(const RunLoop::Action& timerUpdate);                ///< No tick comes until one of the others.
  bool isRunning() const { return autoPlayTimer_ != nullptr; }  ///< Whether there is a timer.

  /// Called once at each tick: whether it comes more than kLongestHoldUp after its time. After a late one the ticks
  /// begin anew, so that the next tone has its whole time.
  bool isTickLate();

  /// A tone starts, the first of its frequency or not. Where its tick would come before it has had its time, the tick
  /// moves.
  void toneStarts(bool isFirstOfFrequency);

  /// It can be answered from now on: what held up the thread since it started does not count as its time.
  void toneCanBeAnswered();

  /// At a tick: whether the thread was held up while the tone could have been answered. Then the tick is moved, to give
  /// the tone the time that it has lost.
  bool hasMadeUpForHoldUp();

  /// Ends the timer for good; the next operation makes a new one.
  void end();

 private:
  void setFireDate(const RunLoop::Action& timerUpdate, std::chrono::nanoseconds time);
  void move(std::chrono::nanoseconds tick);
  void giveTime(std::chrono::nanoseconds time);

  std::shared_ptr<Timer> autoPlayTimer_;
  std::chrono::nanoseconds interval_{0};  // the timer's own, whatever the setting says since
  std::chrono::nanoseconds due_ = RunLoop::distantFuture;
  HoldUpWatch watch_;
  // Of the tone that started last.
  std::chrono::nanoseconds start_{0};
  std::chrono::nanoseconds time_{0};  // that it gets; none if it is to be judged at once
  std::chrono::nanoseconds heldUpBefore_{0};
};

}  // namespace orn
