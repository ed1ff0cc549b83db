#include <ORNHearingTestSDK/engine/PresentationClock.h>

#include <algorithm>
#include <limits>
#include <utility>

#include <ORNHearingTestSDK/common/DefaultsReading.h>
#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {
namespace {

RunLoop& loop() { return *Platform::current().runLoop; }

std::chrono::seconds playTime() { return std::chrono::seconds(PresentationClock::getPlayTime()); }

}  // namespace

std::int32_t PresentationClock::getPlayTime() {
  constexpr std::int64_t lowest = 4, highest = std::numeric_limits<std::int32_t>::max();
  const std::int64_t stored = integerValue(Platform::current().userDefaults->value("BOFANGSHICHANG"));
  return static_cast<std::int32_t>(std::clamp(stored, lowest, highest));
}

const std::shared_ptr<Timer>& PresentationClock::autoPlayTimer(const RunLoop::Action& timerUpdate) {
  if (!autoPlayTimer_) {
    interval_ = playTime();
    due_ = loop().now() + interval_;
    autoPlayTimer_ = loop().scheduledTimer(interval_, timerUpdate);
  }
  return autoPlayTimer_;
}

void PresentationClock::setFireDate(const RunLoop::Action& timerUpdate, std::chrono::nanoseconds time) {
  autoPlayTimer(timerUpdate);
  move(time);
}

void PresentationClock::move(std::chrono::nanoseconds tick) {
  autoPlayTimer_->setFireDate(tick);
  due_ = tick;
}

void PresentationClock::tickAfterPlayTime(const RunLoop::Action& timerUpdate) {
  watch_.begin();
  setFireDate(timerUpdate, loop().now() + playTime());
}

void PresentationClock::tickNow(const RunLoop::Action& timerUpdate) {
  watch_.begin();
  time_ = {};
  setFireDate(timerUpdate, loop().now());
}

void PresentationClock::park(const RunLoop::Action& timerUpdate) {
  watch_.end();
  setFireDate(timerUpdate, RunLoop::distantFuture);
}

bool PresentationClock::isTickLate() {
  const auto now = loop().now();
  if (now < due_) return false;  // somebody else's call, not the timer's
  const auto late = now - due_;
  due_ += interval_;
  if (late > kLongestDelay && autoPlayTimer_) move(now + interval_);
  return late > kLongestHoldUp;
}

void PresentationClock::toneStarts(bool isFirstOfFrequency) {
  start_ = loop().now();
  // The ticks keep their rhythm through the pause before a further frequency.
  time_ = interval_ - (isFirstOfFrequency ? kUntilNextFrequency : std::chrono::seconds(0));
  heldUpBefore_ = watch_.total();
  giveTime(time_);
}

void PresentationClock::toneCanBeAnswered() {
  if (loop().now() - start_ <= kLongestDelay) return;
  start_ = loop().now();
  heldUpBefore_ = watch_.total();
  giveTime(time_);
}

void PresentationClock::giveTime(std::chrono::nanoseconds time) {
  const auto tick = loop().now() + time;
  if (autoPlayTimer_ && due_ < tick - kLongestDelay) move(tick);
}

bool PresentationClock::hasMadeUpForHoldUp() {
  const auto heldUp = watch_.total() - heldUpBefore_;
  if (!autoPlayTimer_ || heldUp <= kLongestDelay) return false;
  const auto answerable = loop().now() - start_ - heldUp;
  const auto owed = time_ - answerable;
  if (owed <= kLongestDelay) return false;
  move(loop().now() + owed);
  return true;
}

void PresentationClock::end() {
  watch_.end();
  if (const auto timer = std::exchange(autoPlayTimer_, nullptr)) timer->invalidate();
}

}  // namespace orn
