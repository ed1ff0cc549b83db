#include <ORNHearingTestSDK/engine/HoldUpWatch.h>

#include <utility>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {
namespace {

constexpr std::chrono::milliseconds kBeat{100};

RunLoop& beatLoop() { return *Platform::current().runLoop; }

/// A beat that is only a little late means a busy thread, not a hold-up.
std::chrono::nanoseconds missedSince(std::chrono::nanoseconds last) {
  const auto pause = beatLoop().now() - last;
  return pause < 2 * kBeat ? std::chrono::nanoseconds(0) : pause - kBeat;
}

}  // namespace

HoldUpWatch::~HoldUpWatch() {
  if (timer_) timer_->invalidate();
}

void HoldUpWatch::begin() {
  if (timer_) return;
  beats_->last = beatLoop().now();
  timer_ = beatLoop().scheduledTimer(kBeat, [beats = beats_] {
    beats->missed += missedSince(beats->last);
    beats->last = beatLoop().now();
  });
}

void HoldUpWatch::end() {
  if (!timer_) return;
  beats_->missed = total();
  std::exchange(timer_, nullptr)->invalidate();
}

std::chrono::nanoseconds HoldUpWatch::total() const {
  return beats_->missed + (timer_ ? missedSince(beats_->last) : std::chrono::nanoseconds(0));
}

}  // namespace orn
