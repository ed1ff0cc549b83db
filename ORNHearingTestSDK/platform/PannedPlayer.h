#pragma once

#include <ORNHearingTestSDK/platform/AudioPlayer.h>
#include <ORNHearingTestSDK/platform/StereoGain.h>

namespace orn {

/// A player whose pan and volume are kept here; what remains for a backend is the gain that they give each channel.
class PannedPlayer : public AudioPlayer {
 public:
  void setPan(float pan) final {
    pan_ = pan;
    setGain(StereoGain::of(pan_, volume_));
  }
  void setVolume(float volume) final {
    volume_ = volume;
    setGain(StereoGain::of(pan_, volume_));
  }
  float pan() const final { return pan_; }
  float volume() const final { return volume_; }

 protected:
  /// From now on the recording sounds with this gain, which is 1 in both channels at first.
  virtual void setGain(StereoGain gain) = 0;

 private:
  float pan_ = 0;
  float volume_ = 1;
};

}  // namespace orn
