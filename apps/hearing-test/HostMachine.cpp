#include "hearing-test/HostMachine.h"

#include <memory>

#include <ORNHearingTestSDK/platform/linux/LinuxDevice.h>
#include <ORNHearingTestSDK/platform/linux/LinuxFileManager.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>
#include <ORNHearingTestSDK/platform/linux/LinuxUserDefaults.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioOutput.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioSession.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

constexpr auto kIdentifier = "hearing-test";
constexpr auto kVersion = "1.0";

LinuxRunLoop& linuxLoop(const Platform& machine) { return dynamic_cast<LinuxRunLoop&>(*machine.runLoop); }

}  // namespace

Platform hostMachine() {
  Platform machine;
  machine.runLoop = std::make_shared<LinuxRunLoop>();
  machine.audioOutput = std::make_shared<SimulatedAudioOutput>(machine.runLoop);
  machine.audioSession = std::make_shared<SimulatedAudioSession>();
  machine.urlSession = std::make_shared<LinuxURLSession>();
  machine.userDefaults = std::make_shared<LinuxUserDefaults>(LinuxUserDefaults::defaultPath(kIdentifier));
  machine.fileManager = std::make_shared<LinuxFileManager>(kIdentifier);
  machine.device = std::make_shared<LinuxDevice>(kIdentifier, kVersion);
  return machine;
}

void setServiceHost(const Platform& machine, const std::string& host) {
  if (!host.empty()) machine.userDefaults->setValue(kServiceHostDefault, host);
}

void runLoopOf(const Platform& machine) { linuxLoop(machine).run(); }
void stopLoopOf(const Platform& machine) { linuxLoop(machine).stop(); }

}  // namespace orn
