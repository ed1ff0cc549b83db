#include "simulation/runs/SimulatedTest.h"

#include <chrono>
#include <memory>
#include <utility>

#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "simulation/calibration/SampleCalibration.h"
#include "simulation/runs/BlockingURLSession.h"

namespace orn::simulation {
namespace {

constexpr std::chrono::seconds kLongestTest = std::chrono::hours(24);
constexpr std::chrono::seconds kRestBetweenEars{2};

/// The simulated machine, with the service of a real one if one is given.
class Machine {
 public:
  explicit Machine(const std::optional<Platform>& service) {
    Platform platform = simulated.platform();
    if (service) {
      platform.urlSession = std::make_shared<BlockingURLSession>(service->urlSession);
      platform.userDefaults = service->userDefaults;
      platform.fileManager = service->fileManager;
      platform.device = service->device;
    }
    Platform::setCurrent(platform);
  }
  ~Machine() { Platform::clearCurrent(); }
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  SimulatedPlatform simulated;
};

/// Runs what replies have handed to the main thread.
void hearReplies(Machine& machine) { machine.simulated.virtualTime->runFor(std::chrono::seconds(0)); }

void calibrate(TestRun& run, const TestPlan& plan, Machine& machine) {
  if (!plan.service) return run.calibrate(plan.path, sampleDevice(plan.path), plan.calibrationReply);
  run.fetchCalibration(plan.path, sampleDevice(plan.path), [] {});
  hearReplies(machine);
}

}  // namespace

TestOutcome runSimulatedTest(const TestPlan& plan, const TestWatch& watch) {
  const LinuxRunLoop wallClock;
  Machine machine(plan.service);
  const auto& output = machine.simulated.audioOutput;
  TestWatch watched = watch;
  watched.earEnds = [&](TestRun& run, bool nextIsLeft) {
    machine.simulated.runLoop->performAfterDelay(kRestBetweenEars, [&run, nextIsLeft] { run.startEar(nextIsLeft); });
  };
  // Shared with the output, which may sound, and so call its listener, until it goes.
  const auto run = std::make_shared<TestRun>(plan.type, plan.frequencies, std::move(watched));
  calibrate(*run, plan, machine);
  run->invite(plan.listener);
  if (plan.keepsSamples) output->keepSamples();
  output->addListener([run](std::int64_t, std::span<const std::int16_t> samples) { run->hear(samples); });

  run->startEar(false);
  if (!machine.simulated.virtualTime->runUntil([&run] { return run->isOver(); }, kLongestTest)) {
    run->fail("the test did not come to an end");
  }
  hearReplies(machine);
  TestOutcome outcome = run->takeOutcome();
  outcome.elapsedSeconds = std::chrono::duration<double>(wallClock.now()).count();
  if (plan.keepsSamples) outcome.samples = output->keptSamples();
  return outcome;
}

}  // namespace orn::simulation
