#include <ORNHearingTestSDK/platform/linux/SoundWatch.h>

#include <utility>

namespace orn {

void SoundWatch::setToPlay(bool isToPlay, Time now) {
  if (isToPlay_ == isToPlay) return;
  look(now);
  isToPlay_ = isToPlay;
  isCounted_ = false;
  waitsSince_.reset();
  waitForServer(now);
  look(now);
}

void SoundWatch::setHeldBack(bool isHeldBack, Time now) {
  if (isHeldBack_ == isHeldBack) return;
  look(now);
  isHeldBack_ = isHeldBack;
  isCounted_ = false;
  waitsSince_.reset();
  waitForServer(now);
  look(now);
}

void SoundWatch::wrote(Time now) {
  holdsSamples_ = true;
  waitForServer(now);
}

void SoundWatch::dropped(Time now) {
  look(now);
  holdsSamples_ = false;
  if (!isToPlay_) isSounding_ = false;
  droppedAt_ = now;
}

void SoundWatch::answered(Time now) {
  look(now);
  if (!isHeldBack_) isCounted_ = false;
  waitsSince_.reset();
  waitForServer(now);
}

void SoundWatch::started(Time now) {
  isSounding_ = holdsSamples_ = true;
  answered(now);
}

void SoundWatch::ranDry(Time now, bool isAtEnd) {
  answered(now);
  const bool isOfOurDoing = droppedAt_ && now - *droppedAt_ < kAfterDrop;
  if (isToPlay_ && isSounding_ && !isHeldBack_ && !isAtEnd && !isOfOurDoing) ++lapses_;
  isSounding_ = holdsSamples_ = false;
  waitsSince_.reset();
}

void SoundWatch::lost(Time now) {
  look(now);
  if (isToPlay_ && hasSound() && !isCounted_) ++lapses_;
  isToPlay_ = isHeldBack_ = isSounding_ = holdsSamples_ = isCounted_ = false;
  waitsSince_.reset();
  droppedAt_.reset();
}

/// A server without samples is not waited for.
void SoundWatch::waitForServer(Time now) {
  if (isToPlay_ && !isHeldBack_ && holdsSamples_ && !waitsSince_) waitsSince_ = now;
}

bool SoundWatch::isStalled(Time now) const { return waitsSince_ && now - *waitsSince_ > kPatience; }

std::error_code SoundWatch::status(Time now) const {
  if (isToPlay_ && isHeldBack_) return std::make_error_code(std::errc::device_or_resource_busy);
  return isStalled(now) ? std::make_error_code(std::errc::timed_out) : std::error_code{};
}

void SoundWatch::look(Time now) {
  const bool isMissing = isToPlay_ && hasSound() && (isHeldBack_ || isStalled(now));
  if (isMissing && !std::exchange(isCounted_, true)) ++lapses_;
}

}  // namespace orn
