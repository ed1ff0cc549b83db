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
  setFireDate(timerUpdate, loop().now() + playTime());
}

void PresentationClock::tickNow(const RunLoop::Action& timerUpdate) { setFireDate(timerUpdate, loop().now()); }

void PresentationClock::park(const RunLoop::Action& timerUpdate) { setFireDate(timerUpdate, RunLoop::distantFuture); }

bool PresentationClock::isTickLate() {
  const auto now = loop().now();
  const bool isLate = now - due_ > longestHoldUp;
  due_ = now + interval_;
  if (isLate && autoPlayTimer_) move(due_);
  return isLate;
}

void PresentationClock::nextFrequencyComes(std::chrono::nanoseconds then) {
  const auto now = loop().now();
  const auto tick = now + interval_ - untilNextFrequency;
  if (now - then > longestDelay && due_ < tick && autoPlayTimer_) move(tick);
}

void PresentationClock::end() {
  if (const auto timer = std::exchange(autoPlayTimer_, nullptr)) timer->invalidate();
}

}  // namespace orn
