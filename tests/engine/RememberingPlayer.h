#pragma once

#include <system_error>

#include <ORNHearingTestSDK/platform/AudioPlayer.h>

namespace orn {

/// A tone player that remembers what it was told.
class RememberingPlayer final : public AudioPlayer {
 public:
  void setNumberOfLoops(int) override {}
  std::error_code prepareToPlay() override { return {}; }
  void setPan(float pan) override { pan_ = pan; }
  void setVolume(float volume) override { volume_ = volume; }
  float pan() const override { return pan_; }
  float volume() const override { return volume_; }
  std::error_code play() override { return isPlaying = true, std::error_code(); }
  void stop() override { isPlaying = false; }

  bool isPlaying = false;

 private:
  float pan_ = 0, volume_ = 1;
};

}  // namespace orn
