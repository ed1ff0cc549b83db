#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>
#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>
#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>
#include <ORNHearingTestSDK/contracts/DeviceContract.h>

#include "ContractExpectations.h"
#include "examples/backend-contracts/SimulatedBackend.h"

// The contracts that a porter's backend must keep, checked on this library's own backends.

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

}  // namespace
}  // namespace orn::contract
