#include "hearing-test/ConformanceCommand.h"

#include <cstdio>
#include <CLI/CLI.hpp>

#include "hearing-test/CalibrationReply.h"
#include "hearing-test/ConformanceReport.h"

namespace orn {

using simulation::OutputPath;

ConformanceCommand::ConformanceCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "conformance", "Renders and measures every cell of the grid: what misses IEC 60645-1, clips or is too quiet");
  command->add_option("--path", path_, "Where the sound goes: the audiometer's stream, the earphones' tone bank")
      ->check(CLI::IsMember({"audiometer", "earphones", "both"}))
      ->capture_default_str();
  command->add_option("--calibration", calibration_, "Calibration reply of the service, as a JSON file")
      ->option_text("REPLY.json");
  command->add_flag("--json", json_, "Prints one JSON object and nothing else");
}

int ConformanceCommand::run() {
  std::vector<ConformanceResult> results;
  for (const OutputPath path : {OutputPath::Audiometer, OutputPath::Earphones}) {
    if (path_ == (path == OutputPath::Audiometer ? "earphones" : "audiometer")) continue;
    results.push_back({path, simulation::measureConformance(path, calibrationReply(path, calibration_))});
  }
  if (json_) {
    std::printf("%s\n", jsonReport(results).c_str());
  } else {
    for (const ConformanceResult& result : results) printReport(result);
  }
  return 0;
}

}  // namespace orn
