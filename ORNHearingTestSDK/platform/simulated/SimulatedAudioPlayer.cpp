#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioPlayer.h>

#include <algorithm>

namespace orn {

SimulatedAudioPlayer::SimulatedAudioPlayer(std::shared_ptr<SimulatedMixer> mixer, std::vector<std::int16_t> samples)
    : mixer_(std::move(mixer)), samples_(std::move(samples)) {
  mixer_->addSource(this);
}

SimulatedAudioPlayer::~SimulatedAudioPlayer() {
  stop();
  mixer_->removeSource(this);
}

void SimulatedAudioPlayer::setPan(float pan) {
  mixer_->catchUp();
  pan_ = pan;
  gain_ = StereoGain::of(pan_, volume_);
}

void SimulatedAudioPlayer::setVolume(float volume) {
  mixer_->catchUp();
  volume_ = volume;
  gain_ = StereoGain::of(pan_, volume_);
}

std::error_code SimulatedAudioPlayer::play() {
  mixer_->catchUp();
  playing_ = !samples_.empty();
  return {};
}

void SimulatedAudioPlayer::stop() {
  mixer_->catchUp();
  playing_ = false;
}

void SimulatedAudioPlayer::mixInto(std::span<std::int32_t> sums) {
  while (playing_ && !sums.empty()) {
    const std::size_t frames = std::min(sums.size() / 2, samples_.size() - next_);
    const std::int16_t* samples = samples_.data() + next_;
    for (std::size_t i = 0; i < frames; ++i) {
      sums[2 * i] += scaledSample(samples[i], gain_.left);
      sums[2 * i + 1] += scaledSample(samples[i], gain_.right);
    }
    sums = sums.subspan(2 * frames);
    next_ += frames;
    if (next_ == samples_.size()) goOnOrEnd();
  }
}

void SimulatedAudioPlayer::goOnOrEnd() {
  next_ = 0;
  if (loopsLeft_ == 0) playing_ = false;
  if (loopsLeft_ > 0) --loopsLeft_;
}

}  // namespace orn
