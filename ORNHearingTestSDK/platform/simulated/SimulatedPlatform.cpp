#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include <utility>

namespace orn {

SimulatedPlatform::SimulatedPlatform() : SimulatedPlatform(std::make_shared<SimulatedRunLoop>()) {
  virtualTime = std::static_pointer_cast<SimulatedRunLoop>(runLoop);
}

SimulatedPlatform::SimulatedPlatform(std::shared_ptr<RunLoop> otherLoop)
    : runLoop(std::move(otherLoop)),
      audioOutput(std::make_shared<SimulatedAudioOutput>(runLoop)),
      audioSession(std::make_shared<SimulatedAudioSession>()),
      urlSession(std::make_shared<SimulatedURLSession>(runLoop)),
      userDefaults(std::make_shared<SimulatedUserDefaults>()),
      fileManager(std::make_shared<SimulatedFileManager>()),
      device(std::make_shared<SimulatedDevice>()) {}

Platform SimulatedPlatform::platform() const {
  return {runLoop, audioOutput, audioSession, urlSession, userDefaults, fileManager, device};
}

}  // namespace orn
