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
  if (!autoPlayTimer_) autoPlayTimer_ = loop().scheduledTimer(playTime(), timerUpdate);
  return autoPlayTimer_;
}

void PresentationClock::tickAfterPlayTime(const RunLoop::Action& timerUpdate) {
  autoPlayTimer(timerUpdate)->setFireDate(loop().now() + playTime());
}

void PresentationClock::tickNow(const RunLoop::Action& timerUpdate) {
  autoPlayTimer(timerUpdate)->setFireDate(loop().now());
}

void PresentationClock::park(const RunLoop::Action& timerUpdate) {
  autoPlayTimer(timerUpdate)->setFireDate(RunLoop::distantFuture);
}

void PresentationClock::end() {
  if (const auto timer = std::exchange(autoPlayTimer_, nullptr)) timer->invalidate();
}

}  // namespace orn
