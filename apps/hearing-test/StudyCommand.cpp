#include "hearing-test/StudyCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <CLI/CLI.hpp>

#include "hearing-test/CalibrationReply.h"
#include "hearing-test/CommonOptions.h"
#include "hearing-test/StudyReport.h"
#include "simulation/studies/StudyStatistics.h"
#include "simulation/studies/WorkerProcesses.h"

namespace orn {

using simulation::Population;
using simulation::StudyPlan;
using simulation::TestType;

StudyCommand::StudyCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "study",
      "Many virtual listeners take a test of both ears twice: how far the thresholds found are from the true ones");
  command->add_option("--listeners", listeners_, "How many")
      ->check(CLI::Range(std::size_t{1}, std::size_t{10'000'000}))
      ->capture_default_str();
  addType(*command, type_, Choice::OfOneOrBoth);
  addPath(*command, path_, Choice::OfOneOrBoth);
  command->add_option("--seed", seed_, "Seed of all random choices; each listener's own is derived from it")
      ->capture_default_str();
  command->add_option("--thresholds", thresholds_, "uniform, or audiograms: N1-N7 and S1-S3 in turn")
      ->check(CLI::IsMember({"uniform", "audiograms"}))
      ->capture_default_str();
  command->add_option("--lowest", population_.lowest, "Least of the uniform thresholds, in dB HL")
      ->check(CLI::Range(-20.0, 120.0))
      ->capture_default_str();
  command->add_option("--highest", population_.highest, "Largest of them")
      ->check(CLI::Range(-20.0, 120.0))
      ->capture_default_str();
  command
      ->add_option("--correlation", population_.correlation,
                   "Correlation of uniform thresholds at neighbouring frequencies")
      ->check(CLI::Range(0.0, 1.0))
      ->capture_default_str();
  addChances(*command, population_.slope, population_.guess, population_.lapse);
  command->add_option("--quickest", quickest_, "Shortest of the listeners' median reaction times, in ms")
      ->check(CLI::Range(0, 60'000))
      ->capture_default_str();
  command->add_option("--slowest", slowest_, "Longest of them")->check(CLI::Range(0, 60'000))->capture_default_str();
  command
      ->add_option("--reaction-spread", population_.reactionSpread, "Log-normal spread of a listener's reaction times")
      ->check(CLI::Range(0.0, 10.0))
      ->capture_default_str();
  addCalibration(*command, calibration_);
  command->add_option("--workers", workers_, "Processes that share the work; as many as cores if not given")
      ->check(CLI::Range(std::size_t{1}, std::size_t{1024}));
  addJson(*command, json_);
}

std::vector<StudyPlan> StudyCommand::plans() const {
  std::vector<StudyPlan> plans;
  for (const TestType type : typesNamed(type_)) {
    for (const OutputPath path : pathsNamed(path_)) {
      StudyPlan plan{type, path, calibrationReply(path, calibration_), population_, listeners_, seed_};
      plan.population.quickest = std::chrono::milliseconds(std::min(quickest_, slowest_));
      plan.population.slowest = std::chrono::milliseconds(std::max(quickest_, slowest_));
      if (thresholds_ == "audiograms") plan.population.thresholds = Population::Thresholds::StandardAudiograms;
      plans.push_back(plan);
    }
  }
  return plans;
}

int StudyCommand::run() {
  if (population_.lowest > population_.highest) {
    std::fputs("hearing-test: --lowest is above --highest\n", stderr);
    return 2;
  }
  std::vector<StudyResult> results;
  for (const StudyPlan& plan : plans()) {
    const auto listeners = simulation::runStudy(plan, workers_ > 0 ? workers_ : simulation::availableCores());
    results.push_back({plan, simulation::statisticsOf(plan, listeners)});
    if (!json_) printReport(results.back());
  }
  if (json_) std::printf("%s\n", jsonReport(results).c_str());
  return 0;
}

}  // namespace orn
