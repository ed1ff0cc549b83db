#pragma once

#include <string>
#include <vector>

#include "hearing-test/CommonOptions.h"
#include "hearing-test/ListenerOptions.h"
#include "hearing-test/ResultFiles.h"
#include "simulation/runs/SimulatedTest.h"

namespace CLI {
class App;
}

namespace orn {

/// `hearing-test simulate`: a whole test in virtual time, taken by a virtual listener.
class SimulateCommand {
 public:
  /// Adds the command and its flags to the program's.
  explicit SimulateCommand(CLI::App& app);

  /// The exit code: 0 on success. Throws std::runtime_error with one line on a failure.
  int run();

 private:
  simulation::TestPlan plan() const;

  std::string type_ = "auto";
  std::string path_ = "audiometer";
  std::vector<std::string> frequencies_ = shortTest();
  ListenerOptions listener_;
  std::string calibration_;
  std::string host_;
  std::string wav_;
  ResultFiles files_;
  bool json_ = false;
};

}  // namespace orn
