#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

/// The clock of a timed test: a repeating timer whose interval is the time that each tone gets. Main thread.
class ORN_EXPORT PresentationClock {
 public:
  /// From a settled threshold to the next frequency's tone.
  static constexpr std::chrono::seconds untilNextFrequency{1};

  /// What a tick may be late by: half of the shortest tone.
  static constexpr std::chrono::seconds longestHoldUp{2};

  /// What any call on a busy main thread may be late by.
  static constexpr std::chrono::milliseconds longestDelay{100};

  /// Time of a presentation in seconds: the user default "BOFANGSHICHANG" where it is above 4, else 4.
  static std::int32_t getPlayTime();

  /// The timer, made with the action if there is none. The action holds the session, so the session lives until end().
  const std::shared_ptr<Timer>& autoPlayTimer(const RunLoop::Action& timerUpdate);

  void tickAfterPlayTime(const RunLoop::Action& timerUpdate);
  void tickNow(const RunLoop::Action& timerUpdate);
  void park(const RunLoop::Action& timerUpdate);

  /// Called once at each tick: whether it comes more than longestHoldUp after its time. Then the program was held up,
  /// nobody knows what was heard meanwhile, and the ticks begin anew from here, so that the next tone has its whole
  /// time.
  bool isTickLate();

  /// Called when the next frequency's tone comes that was to come then: where the program was held up, its tick moves,
  /// so that the tone has its time.
  void nextFrequencyComes(std::chrono::nanoseconds then);

  /// Ends the timer for good; the next operation makes a new one.
  void end();

 private:
  void setFireDate(const RunLoop::Action& timerUpdate, std::chrono::nanoseconds time);
  void move(std::chrono::nanoseconds tick);

  std::shared_ptr<Timer> autoPlayTimer_;
  std::chrono::nanoseconds interval_{0};  // the timer's own, whatever the setting says since
  std::chrono::nanoseconds due_ = RunLoop::distantFuture;
};

}  // namespace orn
