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
  if (const auto missing = mixer_->device()) return missing;
  mixer_->catchUp();
  playing_ = !samples_.empty();
  if (playing_) mixer_->soundIsDue();
  return mixer_->status();
}

void SimulatedAudioPlayer::stop() {
  mixer_->catchUp();
  playing_ = false;
}

void SimulatedAudioPlayer::mixInto(SimulatedMixer::Sums sums) {
  while (playing_ && sums.frames() > 0) {
    const std::size_t frames = std::min(sums.frames(), samples_.size() - next_);
    const auto samples = std::span(samples_).subspan(next_, frames);
    addScaled(samples, gain_.left, sums.left);
    addScaled(samples, gain_.right, sums.right);
    sums = sums.after(frames);
    next_ += frames;
    if (next_ == samples_.size()) goOnOrEnd();
  }
}

void SimulatedAudioPlayer::goOnOrEnd() {
  next_ = 0;
  if (loopsLeft_ == 0) {
    playing_ = false;
    loopsLeft_ = loops_;
  } else if (loopsLeft_ > 0) {
    --loopsLeft_;
  }
}

}  // namespace orn
