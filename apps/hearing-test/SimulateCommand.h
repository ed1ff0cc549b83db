#pragma once

#include <string>
#include <vector>

#include "simulation/SimulatedTest.h"

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
  std::vector<std::string> frequencies_{"1000", "2000", "4000", "500"};
  std::vector<std::string> left_, right_;
  double slope_ = 0, guess_ = 0, lapse_ = 0;
  std::uint64_t seed_ = 1;
  std::string calibration_;
  std::string host_;
  std::string wav_;
  bool json_ = false;
};

}  // namespace orn
