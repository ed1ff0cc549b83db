#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/platform/LoopedRecording.h>
#include <ORNHearingTestSDK/platform/PannedPlayer.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedMixer.h>

namespace orn {

/// A recording, mixed into the simulated output with its pan and gain.
class SimulatedAudioPlayer final : public PannedPlayer, private SimulatedMixer::Source {
 public:
  SimulatedAudioPlayer(std::shared_ptr<SimulatedMixer> mixer, std::vector<std::int16_t> samples);
  ~SimulatedAudioPlayer() override;

  void setNumberOfLoops(int loops) override { recording_.setNumberOfLoops(loops); }
  std::error_code prepareToPlay() override { return mixer_->device(); }
  std::error_code play() override;
  void stop() override;

 private:
  void setGain(StereoGain gain) override;
  void mixInto(SimulatedMixer::Sums sums) override;
  void fallSilent() override { playing_ = false; }
  bool isSounding() const override { return playing_; }

  std::shared_ptr<SimulatedMixer> mixer_;
  LoopedRecording recording_;
  StereoGain gain_;
  bool playing_ = false;
};

}  // namespace orn
