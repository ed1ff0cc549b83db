#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

class AudioOutput;
class AudioSession;
class Device;
class FileManager;
class RunLoop;
class URLSession;
class UserDefaults;

/// Everything that the library asks of the machine it runs on. A program puts one together once, at its start, from
/// whichever backends it likes, and every slot must be filled.
struct ORN_EXPORT Platform {
  std::shared_ptr<RunLoop> runLoop;            ///< The main thread's loop and the clock.
  std::shared_ptr<AudioOutput> audioOutput;    ///< Sound.
  std::shared_ptr<AudioSession> audioSession;  ///< Routes, volume and interruptions.
  std::shared_ptr<URLSession> urlSession;      ///< Requests.
  std::shared_ptr<UserDefaults> userDefaults;  ///< Settings.
  std::shared_ptr<FileManager> fileManager;    ///< Files and bundles.
  std::shared_ptr<Device> device;              ///< What the machine is.

  /// The platform in force. Throws std::logic_error if there is none yet. Any thread once one has been set.
  static const Platform& current();

  /// Whether a platform is in force. Any thread once one has been set.
  static bool isInForce();

  /// Puts a platform in force; throws std::invalid_argument if a slot is empty. The library's single instances belong
  /// to a platform and are made anew after this, so call it before the first session, or between two tests of a test
  /// program, while no session runs. Main thread.
  static void setCurrent(Platform platform);

  /// Takes the platform in force away and lets go of its single instances. Main thread.
  static void clearCurrent();

  /// Makes a call each time a platform has come into force, and at once if one is. Main thread; the library itself does
  /// so while it is being loaded.
  static void whenInForce(void (*call)());
};

}  // namespace orn
