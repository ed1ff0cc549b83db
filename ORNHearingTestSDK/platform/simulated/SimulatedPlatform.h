#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioOutput.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioSession.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedDevice.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedFileManager.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedRunLoop.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedURLSession.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedUserDefaults.h>

namespace orn {

/// A scripted machine for the tests of host applications: no sound device, no network, no wall clock. Its parts are
/// members, for the script; Platform::setCurrent(platform()) puts it in force.
struct ORN_EXPORT SimulatedPlatform {
  /// In virtual time, on `virtualTime`.
  SimulatedPlatform();

  /// The same machine on another loop, such as one in real time; `virtualTime` is empty then.
  explicit SimulatedPlatform(std::shared_ptr<RunLoop> otherLoop);

  /// The machine as a platform, also for putting together with parts of other backends.
  Platform platform() const;

  std::shared_ptr<SimulatedRunLoop> virtualTime;        ///< The loop whose time jumps; null on a loop of the host's.
  std::shared_ptr<RunLoop> runLoop;                     ///< The same loop, or the host's.
  std::shared_ptr<SimulatedAudioOutput> audioOutput;    ///< Sound that is kept or listened to.
  std::shared_ptr<SimulatedAudioSession> audioSession;  ///< Plugs, unplugs, interrupts.
  std::shared_ptr<SimulatedURLSession> urlSession;      ///< Scripted replies.
  std::shared_ptr<SimulatedUserDefaults> userDefaults;  ///< In memory.
  std::shared_ptr<SimulatedFileManager> fileManager;    ///< In a temporary folder.
  std::shared_ptr<SimulatedDevice> device;              ///< With given names.
};

}  // namespace orn
