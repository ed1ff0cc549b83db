#pragma once

#include <string>

#include "simulation/runs/TestOutcome.h"

namespace CLI {
class App;
}

namespace orn {

/// The files that a finished test can be written to: --csv, and in a build with the screens --png, --svg, --pdf and
/// --report.
class ResultFiles {
 public:
  void addTo(CLI::App& command);

  /// Writes those that were asked for. Needs no display; no platform may be in force any more. Throws
  /// std::runtime_error if one can't be written.
  void write(const simulation::TestOutcome& outcome, const std::string& device) const;

 private:
  std::string csv_, png_, svg_, pdf_, report_;
};

}  // namespace orn
