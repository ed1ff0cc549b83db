#pragma once

#include <memory>
#include <string>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

class AudioOutput;
class AudioSession;
class RunLoop;

/// Output and session on one sound server, which share one connection to it.
struct LinuxSound {
  std::shared_ptr<AudioOutput> output;    ///< Plays.
  std::shared_ptr<AudioSession> session;  ///< Knows what is plugged in.
};

/// The sound of this machine through PulseAudio or PipeWire's server of the same protocol. No connection is made before
/// the first question, and a machine without a server counts as one without outputs. An empty server text stands for
/// the user's own server; any other names one as PULSE_SERVER would. The application's name is what the user's mixer
/// shows. Loads libpulse, and throws std::runtime_error if the machine has none. Main thread.
///
/// PipeWire 0.3 does not always report the user's choice between two outputs that are both there. The session then
/// notices it, and tells its observers, a moment after its route was asked for.
ORN_EXPORT LinuxSound linuxSound(const std::shared_ptr<RunLoop>& runLoop, const std::string& applicationName,
                                 const std::string& server = {});

/// The whole of this machine: its sound, network, files, settings and device, with the given run loop. The identifier
/// names the application's folders, such as "org.example.app". Throws as linuxSound() does. Main thread.
ORN_EXPORT Platform linuxPlatform(std::shared_ptr<RunLoop> runLoop, const std::string& applicationIdentifier,
                                  const std::string& applicationVersion);

}  // namespace orn
