#include <cstdlib>

#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>
#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>
#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>
#include <ORNHearingTestSDK/contracts/DeviceContract.h>
#include <ORNHearingTestSDK/platform/linux/LinuxDevice.h>
#include <ORNHearingTestSDK/platform/linux/LinuxFileManager.h>

#include "LinuxBackend.h"
#include "examples/backend-contracts/SimulatedBackend.h"

// The contracts that a porter's backend must keep, on this library's own ones.

namespace orn::contract {
namespace {

TEST(SimulatedContract, OfTheLoop) { expectKept(checkRunLoop(example::loop)); }

TEST(SimulatedContract, OfTheSound) {
  expectKept(checkAudioQueue(example::audio));
  expectKept(checkAudioPlayer(example::audio));
  expectKept(checkAudioOutput(example::audio));
  expectKept(checkAudioSession(example::session));
}

TEST(SimulatedContract, OfTheServices) {
  expectKept(checkURLSession(example::network), {"whatever the status is", "any thread may ask"});
  expectKept(checkUserDefaults(example::defaults), {"after a new start", "full disk"});
  expectKept(checkDevice(example::device));
  const auto onPosix = [] {
    FileManagerUnderTest files = example::files();
    files.withFullDisk = withFullDisk;
    return files;
  };
  expectKept(checkFileManager(onPosix));
}

TEST(LinuxContract, OfTheLoop) { expectKept(checkRunLoop(linuxLoop)); }

TEST(LinuxContract, OfTheNetwork) { expectKept(checkURLSession(linuxNetwork)); }

TEST(LinuxContract, OfTheSettings) { expectKept(checkUserDefaults(linuxDefaults)); }

TEST(LinuxContract, OfTheFilesAndTheDevice) {
  std::string home = std::filesystem::temp_directory_path() / "home.XXXXXX";
  setenv("XDG_DATA_HOME", mkdtemp(home.data()), 1);
  expectKept(checkFileManager([] {
    return FileManagerUnderTest{std::make_shared<LinuxFileManager>("org.app"), withFullDisk};
  }));
  unsetenv("XDG_DATA_HOME");
  std::filesystem::remove_all(home);
  expectKept(checkDevice([] { return std::make_shared<LinuxDevice>("org.app", "1.2"); }));
}

}  // namespace
}  // namespace orn::contract
