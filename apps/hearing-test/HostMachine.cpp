#include "hearing-test/HostMachine.h"

#include <memory>

#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

constexpr auto kIdentifier = "hearing-test";
constexpr auto kVersion = "1.0";

LinuxRunLoop& linuxLoop(const Platform& machine) { return dynamic_cast<LinuxRunLoop&>(*machine.runLoop); }

}  // namespace

Platform hostMachine() { return linuxPlatform(std::make_shared<LinuxRunLoop>(), kIdentifier, kVersion); }

void setServiceHost(const Platform& machine, const std::string& host) {
  if (!host.empty()) machine.userDefaults->setValue(kServiceHostDefault, host);
}

void runLoopOf(const Platform& machine) { linuxLoop(machine).run(); }
void stopLoopOf(const Platform& machine) { linuxLoop(machine).stop(); }

}  // namespace orn
