#include <cstdlib>

#include <ORNHearingTestSDK/contracts/DeviceContract.h>
#include <ORNHearingTestSDK/contracts/FileManagerContract.h>
#include <ORNHearingTestSDK/platform/linux/LinuxDevice.h>
#include <ORNHearingTestSDK/platform/linux/LinuxFileManager.h>

#include "LinuxBackend.h"

namespace orn::contract {
namespace {

TEST(LinuxContract, OfTheLoop) { expectKept(checkRunLoop(linuxLoop)); }

TEST(LinuxContract, OfTheNetwork) { expectKept(checkURLSession(linuxNetwork), {"to the letter"}); }

TEST(LinuxContract, OfTheSettings) { expectKept(checkUserDefaults(linuxDefaults)); }

TEST(LinuxContract, OfTheFilesAndTheDevice) {
  const TemporaryFolder home;
  setenv("XDG_DATA_HOME", home.path().c_str(), 1);
  expectKept(checkFileManager([] {
    return FileManagerUnderTest{std::make_shared<LinuxFileManager>("org.app"), withFullDisk};
  }));
  unsetenv("XDG_DATA_HOME");
  expectKept(checkDevice([] { return std::make_shared<LinuxDevice>("org.app", "1.2"); }));
}

}  // namespace
}  // namespace orn::contract
