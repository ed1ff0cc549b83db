#include "hearing-test/ConformanceCommand.h"

#include <cstdio>
#include <CLI/CLI.hpp>

#include "hearing-test/CalibrationReply.h"
#include "hearing-test/CommonOptions.h"
#include "hearing-test/ConformanceReport.h"

namespace orn {

ConformanceCommand::ConformanceCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "conformance", "Renders and measures every cell of the grid: what misses IEC 60645-1, clips or is too quiet");
  addPath(*command, path_, Choice::OfOneOrBoth)
      ->description("Where the sound goes: the audiometer's stream, the earphones' tone bank");
  addCalibration(*command, calibration_);
  addJson(*command, json_);
}

int ConformanceCommand::run() {
  std::vector<ConformanceResult> results;
  for (const OutputPath path : pathsNamed(path_)) {
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
