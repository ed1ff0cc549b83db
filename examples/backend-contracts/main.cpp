// Runs the suite of contracts against a backend, here the simulated one; a porter's own program looks like this one.

#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>
#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>
#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>
#include <ORNHearingTestSDK/contracts/DeviceContract.h>

#include "SimulatedBackend.h"

int main() {
  using namespace orn::contract;
  return conclude({checkRunLoop(example::loop), checkAudioQueue(example::audio), checkAudioPlayer(example::audio),
                   checkAudioOutput(example::audio), checkAudioSession(example::session),
                   checkURLSession(example::network), checkUserDefaults(example::defaults),
                   checkFileManager(example::files), checkDevice(example::device)});
}
