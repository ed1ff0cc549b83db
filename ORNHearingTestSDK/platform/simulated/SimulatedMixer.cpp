#include <ORNHearingTestSDK/platform/simulated/SimulatedMixer.h>

#include <algorithm>
#include <utility>

namespace orn {
namespace {

// In whole numbers, by stretches of 125 microseconds, of which there are 8000 in a second.
std::int64_t framesBy(std::chrono::nanoseconds time) {
  constexpr std::int64_t stretch = 125'000, frames = kSampleRate / 8000;
  return time.count() / stretch * frames + time.count() % stretch * frames / stretch;
}

}  // namespace

void SimulatedMixer::addSource(Source* source) { sources_.push_back(source); }

void SimulatedMixer::removeSource(Source* source) { std::erase(sources_, source); }

void SimulatedMixer::close() {
  setDevicePresent(false);
  listeners_.clear();
}

void SimulatedMixer::setDevicePresent(bool isPresent) {
  catchUp();
  isDevicePresent_ = isPresent;
  if (isPresent) return;
  if (isSounding()) addLapse();
  for (Source* source : sources_) source->fallSilent();
}

std::error_code SimulatedMixer::device() const {
  return isDevicePresent_ ? std::error_code{} : std::make_error_code(std::errc::no_such_device);
}

void SimulatedMixer::setHeldBack(bool isHeldBack) {
  catchUp();
  if (!isHeldBack) hasHeldSoundBack_ = false;
  isHeldBack_ = isHeldBack;
  if (isSounding()) soundIsDue();
}

std::error_code SimulatedMixer::status() const {
  if (const auto missing = device()) return missing;
  return isHeldBack_ ? std::make_error_code(std::errc::device_or_resource_busy) : std::error_code{};
}

void SimulatedMixer::soundIsDue() {
  if (isHeldBack_ && !std::exchange(hasHeldSoundBack_, true)) addLapse();
}

bool SimulatedMixer::isSounding() const {
  return std::any_of(sources_.begin(), sources_.end(), [](const Source* source) { return source->isSounding(); });
}

void SimulatedMixer::catchUp() {
  const auto runLoop = runLoop_.lock();
  if (rendering_ || !runLoop) return;
  rendering_ = true;
  for (std::int64_t due; (due = framesBy(runLoop->now()) - frame_) > 0;) {
    render(static_cast<std::size_t>(std::min<std::int64_t>(due, kMostFrames)));
  }
  rendering_ = false;
}

void SimulatedMixer::render(std::size_t frames) {
  const Sums sums{std::span(left_).first(frames), std::span(right_).first(frames)};
  const auto samples = std::span(samples_).first(2 * frames);
  std::fill(sums.left.begin(), sums.left.end(), 0);
  std::fill(sums.right.begin(), sums.right.end(), 0);
  // By index: a queue's callback may make further sources.
  for (std::size_t i = 0; i < sources_.size() && !isHeldBack_; ++i) sources_[i]->mixInto(sums);
  for (std::size_t i = 0; i < frames; ++i) {
    samples[2 * i] = static_cast<std::int16_t>(std::clamp(sums.left[i], -32768, 32767));
    samples[2 * i + 1] = static_cast<std::int16_t>(std::clamp(sums.right[i], -32768, 32767));
  }
  const std::int64_t first = frame_;
  frame_ += static_cast<std::int64_t>(frames);
  for (std::size_t i = 0; i < listeners_.size(); ++i) listeners_[i](first, samples);
}

}  // namespace orn
