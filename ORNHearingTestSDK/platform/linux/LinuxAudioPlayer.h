#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioPlayer.h>
#include <ORNHearingTestSDK/platform/StereoGain.h>
#include <ORNHearingTestSDK/platform/linux/PulseStream.h>

namespace orn {

/// A recording written to the sound server in stereo, with pan and gain put on it here, so that each sample is exact.
class LinuxAudioPlayer final : public AudioPlayer, private PulseStream::Writer {
 public:
  LinuxAudioPlayer(std::shared_ptr<SoundDevice> device, std::vector<std::int16_t> samples);
  ~LinuxAudioPlayer() override;

  void setNumberOfLoops(int loops) override;
  std::error_code prepareToPlay() override;
  void setPan(float pan) override;
  void setVolume(float volume) override;
  float pan() const override { return pan_; }
  float volume() const override { return volume_; }
  std::error_code play() override;
  void stop() override;

 private:
  void setGain();
  void write();
  std::int64_t framesToPlay() const;
  void goBackToWhatIsHeard();

  void serverWantsSamples() override;
  bool isAtEnd() const override { return framesToPlay() == 0; }
  void deviceWasLost() override { inServer_ = 0; }

  std::shared_ptr<SoundDevice> device_;
  std::vector<std::int16_t> samples_;
  float pan_ = 0;
  float volume_ = 1;
  // These are guarded by the connection's lock.
  PulseStream stream_;
  StereoGain gain_;
  int loops_ = 0;
  std::int64_t frame_ = 0;     // the next one to be written, counted on over all loops
  std::int64_t inServer_ = 0;  // frames written since the server last held none
  bool isPlaying_ = false;
  std::vector<std::int16_t> stereo_;
};

}  // namespace orn
