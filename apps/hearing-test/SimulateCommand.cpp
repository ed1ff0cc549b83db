#include "hearing-test/SimulateCommand.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/audio/SampleFormat.h>
#include <ORNHearingTestSDK/audio/WaveChange.h>

#include "hearing-test/AudiogramPicture.h"
#include "hearing-test/CalibrationReply.h"
#include "hearing-test/HostMachine.h"
#include "hearing-test/SimulateReport.h"

namespace orn {
namespace {

using simulation::OutputPath;
using simulation::TestOutcome;
using simulation::TestPlan;
using simulation::TestType;

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
  command->add_option("--type", type_, "The test")->check(CLI::IsMember({"auto", "standard"}))->capture_default_str();
  command->add_option("--path", path_, "Where the sound goes")
      ->check(CLI::IsMember({"audiometer", "earphones"}))
      ->capture_default_str();
  addFrequencies(*command, frequencies_);
  listener_.addTo(*command);
  auto* calibration =
      command->add_option("--calibration", calibration_, "Calibration reply of the service, as a JSON file")
          ->option_text("REPLY.json");
  command->add_option("--host", host_, "Gets the calibration from this service and sends it the result")
      ->excludes(calibration);
  command->add_option("--wav", wav_, "Writes what the output played, left and right")->option_text("FILE");
#ifdef ORN_HAS_SCREENS
  command->add_option("--png", png_, "Draws the finished audiogram")->option_text("FILE");
#endif
  command->add_flag("--json", json_, "Prints one JSON object and nothing else");
}

TestPlan SimulateCommand::plan() const {
  TestPlan plan;
  plan.type = type_ == "standard" ? TestType::Standard : TestType::Automatic;
  plan.path = path_ == "earphones" ? OutputPath::Earphones : OutputPath::Audiometer;
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
#ifdef ORN_HAS_SCREENS
  if (!png_.empty()) writeAudiogramPicture(png_, outcome.left, outcome.right);
#endif
  if (json_) {
    std::printf("%s\n", jsonReport(outcome).c_str());
  } else {
    printReport(test, outcome);
  }
  if (!outcome.submissionFailure.empty()) throw std::runtime_error(outcome.submissionFailure);
  return 0;
}

}  // namespace orn
