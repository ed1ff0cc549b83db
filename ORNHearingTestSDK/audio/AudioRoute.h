#pragma once

#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The audio session and the output route, as the class operations of ORNHearingTest give them. Main thread.
class ORN_EXPORT AudioRoute {
 public:
  AudioRoute() = delete;

  /// Runs config() on each platform that comes into force, so that sound is set up before the host's first call. The
  /// library calls it when it is loaded: it costs nothing then and asks nothing of the machine.
  static void load();

  /// Sets the audio session up for playback, Bluetooth allowed; what the platform answers is not passed on.
  static void config();
  static void configAudioSession();                 ///< The same as config().
  static void configAudioSessionToPlayAndRecord();  ///< The same with the microphone allowed.

  /// Whether the sound goes to earphones, by the route's text.
  static bool hasHeadset();

  /// Address of a connected audiometer: the first 17 characters of the UID of the last output port whose name holds
  /// "KV50" or "KV60" and whose UID is longer than that. Nothing if there is none.
  static std::optional<std::string> getKV50Mac();

  /// The hardware model.
  static std::string platform();
};

}  // namespace orn
