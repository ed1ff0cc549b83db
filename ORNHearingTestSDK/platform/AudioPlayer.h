#pragma once

#include <system_error>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Player of one recording, with its own stereo position and gain. Main thread only.
///
/// stop() keeps the place: the next play() goes on from there, so a looping tone has no seam other than silence.
class ORN_EXPORT AudioPlayer {
 public:
  virtual ~AudioPlayer() = default;

  /// -1 plays forever; 0, the start value, plays once.
  virtual void setNumberOfLoops(int loops) = 0;

  /// Gets the device ready, so that play() starts without delay.
  virtual std::error_code prepareToPlay() = 0;

  /// Stereo position: -1 left only, 0 both at full strength, 1 right only. Heard at once.
  virtual void setPan(float pan) = 0;

  /// Linear gain on the recording, not limited to 1; samples beyond the 16-bit range clip. Heard at once. A pan
  /// or volume that is no number is silence.
  virtual void setVolume(float volume) = 0;

  virtual float pan() const = 0;
  virtual float volume() const = 0;

  virtual std::error_code play() = 0;
  virtual void stop() = 0;
};

}  // namespace orn
