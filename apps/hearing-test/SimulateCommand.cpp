#include "hearing-test/SimulateCommand.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/audio/WaveChange.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

#include "hearing-test/CalibrationReply.h"
#include "hearing-test/HostMachine.h"
#include "hearing-test/SimulateReport.h"
#include "simulation/calibration/SampleCalibration.h"

namespace orn {
namespace {

using simulation::TestOutcome;
using simulation::TestPlan;

void writeWave(const std::string& path, const std::vector<std::int16_t>& samples) {
  const auto size = static_cast<std::uint32_t>(samples.size() * sizeof(samples[0]));
  std::uint8_t* header = createWaveHeader(size, 2, kSampleRate, 16);
  std::ofstream file(path, std::ios::binary);
  if (header) file.write(reinterpret_cast<const char*>(header), getWaveHeaderSize());
  freeWaveHeader(header);
  for (const std::int16_t sample : samples) file.put(static_cast<char>(sample)).put(static_cast<char>(sample >> 8));
  file.close();
  if (!file) throw std::runtime_error("can't write " + path);
}

simulation::TestWatch progressForPeople() {
  simulation::TestWatch watch;
  watch.earStarts = [](bool isLeft) { std::printf("Testing the %s ear\n", isLeft ? "left" : "right"); };
  watch.thresholdFound = [](bool, const std::string& hz, const std::string& db) {
    std::printf("  %6s: %s\n", hz.c_str(), db.c_str());
  };
  return watch;
}

}  // namespace

SimulateCommand::SimulateCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "simulate", "Runs a whole test of both ears in virtual time; a virtual listener hears the samples and presses");
  addType(*command, type_);
  addPath(*command, path_);
  addFrequencies(*command, frequencies_);
  listener_.addTo(*command);
  auto* calibration = addCalibration(*command, calibration_);
  command->add_option("--host", host_, "Gets the calibration from this service and sends it the result")
      ->excludes(calibration);
  command->add_option("--wav", wav_, "Writes what the output played, left and right")->option_text("FILE");
  files_.addTo(*command);
  addJson(*command, json_);
}

TestPlan SimulateCommand::plan() const {
  TestPlan plan;
  plan.type = typesNamed(type_).front();
  plan.path = pathsNamed(path_).front();
  plan.frequencies = frequencyKeys(frequencies_);
  plan.listener = listener_.traits();
  if (host_.empty()) {
    plan.calibrationReply = calibrationReply(plan.path, calibration_);
  } else {
    plan.service = hostMachine();
    setServiceHost(*plan.service, host_);
  }
  plan.keepsSamples = !wav_.empty();
  return plan;
}

int SimulateCommand::run() {
  const TestPlan test = plan();
  const TestOutcome outcome = simulation::runSimulatedTest(test, json_ ? simulation::TestWatch{} : progressForPeople());
  if (!outcome.isComplete) throw std::runtime_error(outcome.failure);
  if (!wav_.empty()) writeWave(wav_, outcome.samples);
  files_.write(outcome, simulation::sampleDevice(test.path));
  if (json_) {
    std::printf("%s\n", jsonReport(outcome).c_str());
  } else {
    printReport(test, outcome);
  }
  if (!outcome.submissionFailure.empty()) throw std::runtime_error(outcome.submissionFailure);
  return 0;
}

}  // namespace orn
