#pragma once

#include <string>
#include <vector>

#include "hearing-test/CommonOptions.h"
#include "hearing-test/ListenerOptions.h"
#include "hearing-test/ResultFiles.h"
#include "simulation/runs/TestOutcome.h"

namespace CLI {
class App;
}

namespace orn {

/// `hearing-test run`: a real test on this machine's audio, in the terminal.
class RunCommand {
 public:
  explicit RunCommand(CLI::App& app);

  /// The exit code: 0 on success. Throws std::runtime_error with one line on a failure.
  int run();

 private:
  std::string hint(const simulation::TestOutcome& outcome) const;
  void print(const simulation::TestOutcome& outcome) const;

  std::string type_ = "auto";
  std::vector<std::string> frequencies_ = shortTest();
  bool hasListener_ = false;
  ListenerOptions listener_;
  std::string calibration_;
  std::string host_;
  ResultFiles files_;
  bool json_ = false;
};

}  // namespace orn
