#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioPlayer.h>
#include <ORNHearingTestSDK/platform/StereoGain.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedMixer.h>

namespace orn {

/// A recording mixed into the simulated output by pan and gain.
class SimulatedAudioPlayer final : public AudioPlayer, private SimulatedMixer::Source {
 public:
  SimulatedAudioPlayer(std::shared_ptr<SimulatedMixer> mixer, std::vector<std::int16_t> samples);
  ~SimulatedAudioPlayer() override;

  void setNumberOfLoops(int loops) override { loops_ = loopsLeft_ = loops; }
  std::error_code prepareToPlay() override { return mixer_->device(); }
  void setPan(float pan) override;
  void setVolume(float volume) override;
  float pan() const override { return pan_; }
  float volume() const override { return volume_; }
  std::error_code play() override;
  void stop() override;

 private:
  void mixInto(SimulatedMixer::Sums sums) override;
  void fallSilent() override { playing_ = false; }
  bool isSounding() const override { return playing_; }
  void goOnOrEnd();

  std::shared_ptr<SimulatedMixer> mixer_;
  std::vector<std::int16_t> samples_;
  std::size_t next_ = 0;
  int loops_ = 0;
  int loopsLeft_ = 0;  // until the recording's end
  float pan_ = 0;
  float volume_ = 1;
  StereoGain gain_;
  bool playing_ = false;
};

}  // namespace orn
