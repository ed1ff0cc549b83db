#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioPlayer.h>

#include <utility>

namespace orn {

SimulatedAudioPlayer::SimulatedAudioPlayer(std::shared_ptr<SimulatedMixer> mixer, std::vector<std::int16_t> samples)
    : mixer_(std::move(mixer)), recording_(std::move(samples)) {
  mixer_->addSource(this);
}

SimulatedAudioPlayer::~SimulatedAudioPlayer() {
  stop();
  mixer_->removeSource(this);
}

void SimulatedAudioPlayer::setGain(StereoGain gain) {
  mixer_->catchUp();
  gain_ = gain;
}

std::error_code SimulatedAudioPlayer::play() {
  if (const auto missing = mixer_->device()) return missing;
  mixer_->catchUp();
  playing_ = !recording_.isEmpty();
  if (playing_) mixer_->soundIsDue();
  return mixer_->status();
}

void SimulatedAudioPlayer::stop() {
  mixer_->catchUp();
  playing_ = false;
}

void SimulatedAudioPlayer::mixInto(SimulatedMixer::Sums sums) {
  while (playing_ && sums.frames() > 0) {
    const auto samples = recording_.next(static_cast<std::int64_t>(sums.frames()));
    addScaled(samples, gain_.left, sums.left);
    addScaled(samples, gain_.right, sums.right);
    sums = sums.after(samples.size());
    recording_.move(static_cast<std::int64_t>(samples.size()));
    if (recording_.left() > 0) continue;
    playing_ = false;
    recording_.rewind();
  }
}

}  // namespace orn
