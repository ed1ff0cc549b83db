#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/platform/LoopedRecording.h>
#include <ORNHearingTestSDK/platform/PannedPlayer.h>
#include <ORNHearingTestSDK/platform/linux/PulseStream.h>

namespace orn {

/// A recording written to the sound server in stereo, with pan and gain applied here, so that each sample is exact.
class LinuxAudioPlayer final : public PannedPlayer, private PulseStream::Writer {
 public:
  LinuxAudioPlayer(std::shared_ptr<SoundDevice> device, std::vector<std::int16_t> samples);
  ~LinuxAudioPlayer() override;

  void setNumberOfLoops(int loops) override;
  std::error_code prepareToPlay() override;
  std::error_code play() override;
  void stop() override;

 private:
  void setGain(StereoGain gain) override;
  void write();
  void goBackToWhatIsHeard();

  void serverWantsSamples() override;
  bool isAtEnd() const override { return recording_.left() == 0; }
  void deviceWasLost() override { inServer_ = 0; }

  std::shared_ptr<SoundDevice> device_;
  // All of these are guarded by the connection's lock.
  PulseStream stream_;
  StereoGain gain_;
  LoopedRecording recording_;  // its next sample is the next to be written
  std::int64_t inServer_ = 0;  // frames written since the server last held none
  bool isPlaying_ = false;
  std::vector<std::int16_t> stereo_;
};

}  // namespace orn
