#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>

#include <utility>

#include <ORNHearingTestSDK/platform/linux/LinuxAudioOutput.h>
#include <ORNHearingTestSDK/platform/linux/LinuxAudioSession.h>
#include <ORNHearingTestSDK/platform/linux/LinuxDevice.h>
#include <ORNHearingTestSDK/platform/linux/LinuxFileManager.h>
#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>
#include <ORNHearingTestSDK/platform/linux/LinuxUserDefaults.h>

namespace orn {

LinuxSound linuxSound(const std::shared_ptr<RunLoop>& runLoop, const std::string& applicationName,
                      const std::string& server) {
  const auto shared = std::make_shared<SoundServer>(applicationName, server);
  return {std::make_shared<LinuxAudioOutput>(shared), std::make_shared<LinuxAudioSession>(shared, runLoop)};
}

Platform linuxPlatform(std::shared_ptr<RunLoop> runLoop, const std::string& applicationIdentifier,
                       const std::string& applicationVersion) {
  LinuxSound sound = linuxSound(runLoop, applicationIdentifier);
  Platform machine;
  machine.runLoop = std::move(runLoop);
  machine.audioOutput = std::move(sound.output);
  machine.audioSession = std::move(sound.session);
  machine.urlSession = std::make_shared<LinuxURLSession>();
  machine.userDefaults = std::make_shared<LinuxUserDefaults>(LinuxUserDefaults::defaultPath(applicationIdentifier));
  machine.fileManager = std::make_shared<LinuxFileManager>(applicationIdentifier);
  machine.device = std::make_shared<LinuxDevice>(applicationIdentifier, applicationVersion);
  return machine;
}

}  // namespace orn
