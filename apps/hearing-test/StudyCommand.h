#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "simulation/studies/Study.h"

namespace CLI {
class App;
}

namespace orn {

/// `hearing-test study`: the thresholds that a test finds for many virtual listeners, beside the true ones.
class StudyCommand {
 public:
  /// Adds the command and its flags to the program's.
  explicit StudyCommand(CLI::App& app);

  /// The exit code: 0 on success. Throws std::runtime_error with one line on a failure.
  int run();

 private:
  std::vector<simulation::StudyPlan> plans() const;

  std::size_t listeners_ = 100;
  std::string type_ = "auto";
  std::string path_ = "audiometer";
  std::uint64_t seed_ = 1;
  std::string thresholds_ = "uniform";
  std::string calibration_;
  simulation::Population population_;
  int quickest_ = 300, slowest_ = 700;  // ms
  std::size_t workers_ = 0;
  bool json_ = false;
};

}  // namespace orn
