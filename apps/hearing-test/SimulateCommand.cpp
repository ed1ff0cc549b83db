#include "hearing-test/SimulateCommand.h"

#include <charconv>
#include <cstdio>
#include <fstream>
#include <map>
#include <stdexcept>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/audio/SampleFormat.h>
#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveChange.h>

#include "hearing-test/CalibrationReply.h"
#include "hearing-test/HostMachine.h"
#include "hearing-test/SimulateReport.h"

namespace orn {
namespace {

using simulation::OutputPath;
using simulation::TestOutcome;
using simulation::TestPlan;
using simulation::TestType;

/// Who takes the test where no thresholds are given at all.
const std::vector<std::string> kSomebodysRight{"500=15", "1000=12", "2000=20", "4000=35"};
const std::vector<std::string> kSomebodysLeft{"500=20", "1000=25", "2000=40", "4000=55"};

bool isTestFrequency(std::int32_t hz) {
  return std::find(kToneFrequencies.begin(), kToneFrequencies.end(), hz) != kToneFrequencies.end();
}

template <class Number>
bool readsWholly(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size();
}

/// Empty if the text is one of the seven frequencies, else what is wrong with it.
std::string checkFrequency(const std::string& text) {
  std::int32_t hz = 0;
  if (readsWholly(text, hz) && isTestFrequency(hz)) return {};
  return "'" + text + "' is none of 125, 250, 500, 1000, 2000, 4000, 8000 Hz";
}

std::string checkThreshold(const std::string& text) {
  const auto equals = text.find('=');
  if (equals == std::string::npos) return "'" + text + "' is not of the form HZ=DB";
  double db = 0;
  if (!readsWholly(std::string_view(text).substr(equals + 1), db) || !(db >= -1000 && db <= 1000)) {
    return "'" + text + "' does not give a level in dB";
  }
  return checkFrequency(text.substr(0, equals));
}

std::map<std::int32_t, double> thresholds(const std::vector<std::string>& texts) {
  std::map<std::int32_t, double> levels;
  for (const std::string& text : texts) {
    const auto equals = text.find('=');
    levels[std::stoi(text.substr(0, equals))] = std::stod(text.substr(equals + 1));
  }
  return levels;
}

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
  command->add_option("--frequencies", frequencies_, "Frequencies in Hz, in test order (the standard test has its own)")
      ->delimiter(',')
      ->check(checkFrequency)
      ->capture_default_str();
  command
      ->add_option("--left", left_,
                   "Thresholds of the left ear, HZ=DB,...; 20 dB where none is given. Without --left "
                   "and --right somebody with a mild loss takes the test")
      ->delimiter(',')
      ->check(checkThreshold);
  command->add_option("--right", right_, "Thresholds of the right ear")->delimiter(',')->check(checkThreshold);
  command->add_option("--slope", slope_, "Steepness of the listener's psychometric function per dB; 0 is perfect")
      ->check(CLI::Range(0.0, 1e6))
      ->capture_default_str();
  command->add_option("--guess", guess_, "Probability of a press for a tone not heard")->check(CLI::Range(0.0, 1.0));
  command->add_option("--lapse", lapse_, "Probability of no press for a tone heard")->check(CLI::Range(0.0, 1.0));
  command->add_option("--seed", seed_, "Seed of the listener's chances")->capture_default_str();
  auto* calibration =
      command->add_option("--calibration", calibration_, "Calibration reply of the service, as a JSON file")
          ->option_text("REPLY.json");
  command->add_option("--host", host_, "Gets the calibration from this service and sends it the result")
      ->excludes(calibration);
  command->add_option("--wav", wav_, "Writes what the output played, left and right")->option_text("FILE");
  command->add_flag("--json", json_, "Prints one JSON object and nothing else");
}

TestPlan SimulateCommand::plan() const {
  TestPlan plan;
  plan.type = type_ == "standard" ? TestType::Standard : TestType::Automatic;
  plan.path = path_ == "earphones" ? OutputPath::Earphones : OutputPath::Audiometer;
  plan.frequencies.clear();
  for (const std::string& hz : frequencies_) plan.frequencies.push_back(hz + "hz");
  const bool isAnybodyGiven = !left_.empty() || !right_.empty();
  plan.listener.left = thresholds(isAnybodyGiven ? left_ : kSomebodysLeft);
  plan.listener.right = thresholds(isAnybodyGiven ? right_ : kSomebodysRight);
  plan.listener.slope = slope_;
  plan.listener.guess = guess_;
  plan.listener.lapse = lapse_;
  plan.listener.seed = seed_;
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
  if (json_) {
    std::printf("%s\n", jsonReport(outcome).c_str());
  } else {
    printReport(test, outcome);
  }
  return 0;
}

}  // namespace orn
