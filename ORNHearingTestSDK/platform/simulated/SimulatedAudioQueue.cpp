#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioQueue.h>

#include <algorithm>
#include <utility>

#include <ORNHearingTestSDK/platform/StereoGain.h>

namespace orn {

SimulatedAudioQueue::SimulatedAudioQueue(std::shared_ptr<SimulatedMixer> mixer, OutputCallback callback)
    : mixer_(std::move(mixer)), callback_(std::move(callback)) {
  mixer_->addSource(this);
}

SimulatedAudioQueue::~SimulatedAudioQueue() {
  mixer_->catchUp();
  mixer_->removeSource(this);
}

std::error_code SimulatedAudioQueue::enqueueBuffer(AudioQueueBuffer& buffer) {
  Buffer* const own = buffers_.playable(buffer);
  if (!own) return std::make_error_code(std::errc::invalid_argument);
  catchUpWithoutCallbacks();
  std::erase(enqueued_, own);
  std::erase(ended_, own);
  own->takeSamples();
  enqueued_.push_back(own);
  if (playing_) mixer_->soundIsDue();
  return {};
}

std::error_code SimulatedAudioQueue::setVolume(float volume) {
  catchUpWithoutCallbacks();
  volume_ = volumeInRange(volume);
  return {};
}

/// Whoever sets the volume or hands over a buffer may hold a lock that the callback takes.
void SimulatedAudioQueue::catchUpWithoutCallbacks() {
  const bool before = std::exchange(holdsCallbacks_, true);
  mixer_->catchUp();
  holdsCallbacks_ = before;
}

void SimulatedAudioQueue::setSilent() { playing_ = hasPlayed_ = false; }

std::error_code SimulatedAudioQueue::start() {
  if (const auto missing = mixer_->device()) return missing;
  mixer_->catchUp();
  playing_ = true;
  if (isSounding()) mixer_->soundIsDue();
  return mixer_->status();
}

std::error_code SimulatedAudioQueue::pause() {
  isBeingPaused_ = true;
  mixer_->catchUp();
  isBeingPaused_ = false;
  setSilent();
  return {};
}

std::error_code SimulatedAudioQueue::stop() {
  mixer_->catchUp();
  setSilent();
  enqueued_.clear();
  ended_.clear();
  return {};
}

void SimulatedAudioQueue::mixInto(SimulatedMixer::Sums sums) {
  giveBackEnded();
  while (playing_ && sums.frames() > 0 && !enqueued_.empty()) {
    Buffer& buffer = *enqueued_.front();
    const std::size_t frames = std::min(sums.frames(), buffer.samples.size() - buffer.played);
    const auto samples = std::span(buffer.samples).subspan(buffer.played, frames);
    addScaled(samples, volume_, sums.left);
    addScaled(samples, volume_, sums.right);
    sums = sums.after(frames);
    hasPlayed_ = true;
    buffer.played += frames;
    if (buffer.played < buffer.samples.size()) return;
    enqueued_.pop_front();
    ended_.push_back(&buffer);
    // A buffer that ends at the very moment of a pause is handed back after it.
    if (!isBeingPaused_ || sums.frames() > 0) giveBackEnded();
  }
  if (playing_ && sums.frames() > 0 && std::exchange(hasPlayed_, false)) mixer_->addLapse();
}

void SimulatedAudioQueue::giveBackEnded() {
  while (playing_ && !holdsCallbacks_ && !ended_.empty()) {
    Buffer& buffer = *ended_.front();
    ended_.pop_front();
    callback_(*this, buffer);
  }
}

}  // namespace orn
