#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// One end of the current route.
struct AudioPort {
  std::string portName;  ///< As people know it, such as "KV50-1234".
  std::string UID;       ///< Begins with the device address where the device has one.
};

/// What is plugged in at present.
struct AudioRouteDescription {
  std::vector<AudioPort> inputs;   ///< Microphones.
  std::vector<AudioPort> outputs;  ///< Where sound goes.
};

enum class AudioSessionCategory { Playback, PlayAndRecord };

/// Added up as options of a category.
inline constexpr std::uint32_t kAudioSessionCategoryOptionAllowBluetooth = 4;

/// Why the route changed, as a number; only the one below means something to this library.
inline constexpr std::int32_t kAudioSessionRouteChangeReasonOldDeviceUnavailable = 2;

/// Type of an interruption notice: 1 it begins, 0 it has ended.
inline constexpr std::int32_t kAudioSessionInterruptionTypeEnded = 0;

/// What an observer of the session wants to hear of; an empty member is not called.
struct AudioSessionObserver {
  std::function<void(std::int32_t reason)> routeChange;  ///< Told a reason, kAudioSessionRouteChangeReason....
  /// Told whether one begins or ends, kAudioSessionInterruptionType....
  std::function<void(std::int32_t type)> interruption;
};

/// The device's sound as a whole: activation, route, volume and notices. Main thread only; notices come there too. The
/// route that is found first may be told of as a change.
class ORN_EXPORT AudioSession {
 public:
  virtual ~AudioSession() = default;

  virtual std::error_code setActive(bool active) = 0;  ///< Takes the sound for this application, or lets it go.
  /// Says what the sound is for, with options added up.
  virtual std::error_code setCategory(AudioSessionCategory category, std::uint32_t options) = 0;

  /// The route as one text, such as "HeadphonesBT"; nothing where no output is known, and then no port either.
  virtual std::optional<std::string> routeText() const = 0;
  virtual AudioRouteDescription currentRoute() const = 0;  ///< As it is now.

  /// Volume of the output, 0 to 1.
  virtual float outputVolume() const = 0;

  /// Drives the volume slider of the device, 0 to 1; beyond that the nearer end counts, and NaN is 0.
  /// std::errc::no_such_device where there is none, not_supported where programs can't set the volume.
  virtual std::error_code setOutputVolume(float volume) = 0;

  /// Puts the volume back to the one that outputVolume() told before setOutputVolume() first changed it. Unless a
  /// system keeps more of it than this number, such as a volume for each ear, that is to set it. The same errors.
  virtual std::error_code restoreOutputVolume(float volume) { return setOutputVolume(volume); }

  /// Notices go to the observer for as long as somebody else keeps it alive. From within a notice observers may be
  /// added and let go of.
  virtual void addObserver(std::weak_ptr<const AudioSessionObserver> observer) = 0;
};

}  // namespace orn
