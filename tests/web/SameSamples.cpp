// Whole tests in virtual time, and a check sum of all their samples: what any other platform plays, to the bit.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "simulation/calibration/SampleCalibration.h"
#include "simulation/runs/TestRun.h"

namespace {

using namespace orn::simulation;

/// CRC-32 as of gzip, over the bytes of a WAV file's samples.
std::uint32_t checkSum(std::span<const std::int16_t> samples) {
  std::uint32_t sum = ~0U;
  for (const std::int16_t sample : samples) {
    for (const int shift : {0, 8}) {
      sum ^= static_cast<std::uint32_t>(sample >> shift & 0xFF);
      for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320U : 0);
    }
  }
  return ~sum;
}

void runTest(TestType type, orn::OutputPath path, const char* name) {
  const orn::SimulatedPlatform machine;
  orn::Platform::setCurrent(machine.platform());
  {
    TestWatch watch;
    watch.earEnds = [&](TestRun& run, bool nextIsLeft) {
      machine.runLoop->performAfterDelay(std::chrono::seconds(2), [&run, nextIsLeft] { run.startEar(nextIsLeft); });
    };
    const auto run = std::make_shared<TestRun>(type, orn::frequencyKeys(orn::kShortTestOrder), watch);
    run->calibrate(path, sampleDevice(path), sampleReply(path));
    run->invite({});
    machine.audioOutput->keepSamples();
    machine.audioOutput->addListener(
        [run](std::int64_t, std::span<const std::int16_t> samples) { run->hear(samples); });
    run->startEar(false);
    machine.virtualTime->runUntil([&] { return run->isOver(); }, std::chrono::hours(24));
    machine.virtualTime->runFor({});
    const auto& samples = machine.audioOutput->keptSamples();
    std::printf("%s %zu %08x\n", name, samples.size() / 2, checkSum(samples));
  }
  orn::Platform::clearCurrent();
}

}  // namespace

int main() {
  runTest(TestType::Automatic, orn::OutputPath::Audiometer, "auto audiometer");
  runTest(TestType::Automatic, orn::OutputPath::Earphones, "auto earphones");
  runTest(TestType::Standard, orn::OutputPath::Audiometer, "standard audiometer");
  runTest(TestType::Standard, orn::OutputPath::Earphones, "standard earphones");
  return 0;
}
