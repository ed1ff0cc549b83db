#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioQueue.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <ORNHearingTestSDK/platform/StereoGain.h>

namespace orn {
namespace {

void samplesInto(std::span<const std::uint8_t> bytes, std::vector<std::int16_t>& samples) {
  samples.resize(bytes.size() / 2);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    samples[i] = static_cast<std::int16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
  }
}

}  // namespace

SimulatedAudioQueue::SimulatedAudioQueue(std::shared_ptr<SimulatedMixer> mixer, OutputCallback callback)
    : mixer_(std::move(mixer)), callback_(std::move(callback)) {
  mixer_->addSource(this);
}

SimulatedAudioQueue::~SimulatedAudioQueue() {
  mixer_->catchUp();
  mixer_->removeSource(this);
}

AudioQueueBuffer* SimulatedAudioQueue::allocateBuffer(std::uint32_t byteSize) {
  auto buffer = std::make_unique<Buffer>();
  buffer->room.resize(byteSize);
  buffer->mAudioData = buffer->room;
  return buffers_.emplace_back(std::move(buffer)).get();
}

std::error_code SimulatedAudioQueue::enqueueBuffer(AudioQueueBuffer& buffer) {
  const auto own =
      std::find_if(buffers_.begin(), buffers_.end(), [&](const auto& one) { return one.get() == &buffer; });
  const std::size_t size = std::min<std::size_t>(buffer.mAudioDataByteSize, buffer.mAudioData.size());
  if (own == buffers_.end() || size < 2) return std::make_error_code(std::errc::invalid_argument);
  catchUpWithoutCallbacks();
  std::erase(enqueued_, own->get());
  std::erase(ended_, own->get());
  samplesInto(buffer.mAudioData.first(size), (*own)->samples);
  (*own)->played = 0;
  enqueued_.push_back(own->get());
  if (playing_) mixer_->soundIsDue();
  return {};
}

std::error_code SimulatedAudioQueue::setVolume(float volume) {
  catchUpWithoutCallbacks();
  volume_ = std::isnan(volume) ? 0.0F : std::clamp(volume, 0.0F, 1.0F);
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
    // What ends in the very moment of a pause comes back after it.
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
