// Whole tests in virtual time, and a checksum of all their samples, which are the same to the bit on every platform.

#include <chrono>
#include <cinttypes>
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

/// FNV-1a over samples.
struct CheckSum {
  std::size_t samples = 0;
  std::uint64_t sum = 0xCBF29CE484222325U;

  void add(std::span<const std::int16_t> more) {
    samples += more.size();
    for (const std::int16_t one : more) sum = (sum ^ static_cast<std::uint16_t>(one)) * 0x100000001B3U;
  }
};

void runTest(TestType type, orn::OutputPath path, const char* name) {
  CheckSum sum;  // outlives the output
  const orn::SimulatedPlatform machine;
  orn::Platform::setCurrent(machine.platform());
  {
    TestWatch watch;
    watch.earEnds = [&](TestRun& run, bool nextIsLeft) {
      machine.runLoop->performAfterDelay(std::chrono::seconds(2), [&run, nextIsLeft] { run.startEar(nextIsLeft); });
    };
    const auto run = std::make_shared<TestRun>(type, orn::frequencyKeys(orn::kShortTestOrder), watch);
    run->calibrate(path, sampleDevice(path), sampleReply(path));
    ListenerTraits listener;
    listener.left = listener.right = {{500, 55}, {1000, 20}, {2000, 25}, {4000, 40}};
    run->invite(listener);
    machine.audioOutput->addListener([run, &sum](std::int64_t, std::span<const std::int16_t> samples) {
      run->hear(samples);
      sum.add(samples);
    });
    run->startEar(false);
    machine.virtualTime->runUntil([&] { return run->isOver(); }, std::chrono::hours(24));
    std::printf("%s %zu %016" PRIx64 "\n", name, sum.samples / 2, sum.sum);
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
