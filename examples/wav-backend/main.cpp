// A backend of one's own, whose device is a WAV file: first the suite of contracts checks it, then a tone of each ear
// is left in the file.   Usage: wav-backend FILE

#include <chrono>
#include <fstream>

#include <ORNHearingTestSDK/ORNHearingTestSDK.h>
#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>
#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>
#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "WavOutput.h"

namespace {

/// The device's samples are read from the file, as a recording of a real one would be.
orn::contract::AudioUnderTest audio(const std::string& path) {
  const auto loop = std::make_shared<orn::SimulatedRunLoop>();
  const auto output = std::make_shared<example::WavOutput>(loop, path);
  const auto file = std::make_shared<std::ifstream>(path, std::ios::binary);
  file->ignore(getWaveHeaderSize());
  const auto heard = [file] {
    std::vector<std::int16_t> samples;
    for (char bytes[2]; file->read(bytes, 2);) {
      samples.push_back(static_cast<std::int16_t>(static_cast<std::uint8_t>(bytes[0]) | bytes[1] << 8));
    }
    file->clear();  // forgets the end of the file, which grows
    return samples;
  };
  return {.output = output,
          .runFor = [loop](std::chrono::nanoseconds span) { loop->runFor(span); },
          .heard = heard,
          .framesHeldBack = 0,
          .takeDeviceAway = {},
          .bringDeviceBack = {}};
}

/// The other slots hold simulated parts.
void playTones(const std::string& path) {
  const orn::SimulatedPlatform machine;
  orn::Platform platform = machine.platform();
  platform.audioOutput = std::make_shared<example::WavOutput>(machine.runLoop, path);
  orn::Platform::setCurrent(std::move(platform));
  const auto calibration = std::make_shared<orn::ORNDeviceVolumeIOS>();
  calibration->setS1000("-50");
  const auto session = orn::ORNManualHearingTest::init();
  session->setLeftVolume(calibration);
  session->setRightVolue(calibration);
  for (const bool isLeft : {true, false}) {
    session->startTest(isLeft);
    session->playAtHz("1000hz", "60db");
    machine.virtualTime->runFor(std::chrono::seconds(2));
  }
  session->endTest();
  orn::Platform::clearCurrent();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  using namespace orn::contract;
  const std::string path = argv[1];
  const auto make = [&] { return audio(path); };
  const int broken = conclude({checkAudioQueue(make), checkAudioPlayer(make), checkAudioOutput(make)});
  playTones(path);
  return broken;
}
