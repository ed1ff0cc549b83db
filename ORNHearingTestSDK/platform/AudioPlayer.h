#pragma once

#include <system_error>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Player of one recording, with its own stereo position and gain. Main thread only.
///
/// stop() keeps the place: the next play() goes on from there, so a looping tone has no seam other than silence. What
/// the device had taken and not yet played may be played again. After its end a recording begins anew.
class ORN_EXPORT AudioPlayer {
 public:
  virtual ~AudioPlayer() = default;

  /// -1 plays forever; 0, the start value, plays once, and a number above it that often again, without a seam.
  virtual void setNumberOfLoops(int loops) = 0;

  /// Gets the device ready, so that play() starts without delay. Makes no sound.
  virtual std::error_code prepareToPlay() = 0;

  /// Stereo position: -1 left only, 0 both at full strength, 1 right only; between, the far side loses what the pan
  /// takes, so that -0.25 leaves the right 0.75. Beyond, the nearer end counts. Heard at once.
  virtual void setPan(float pan) = 0;

  /// Linear gain on the recording, not limited to 1; samples beyond the 16-bit range clip. Heard at once. A pan or
  /// volume that is not a number is silence.
  virtual void setVolume(float volume) = 0;

  virtual float pan() const = 0;     ///< As it was set; 0 at first.
  virtual float volume() const = 0;  ///< As it was set; 1 at first.

  /// Harmless while it plays.
  virtual std::error_code play() = 0;
  virtual void stop() = 0;  ///< Falls silent and keeps the place.
};

}  // namespace orn
