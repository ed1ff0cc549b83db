#pragma once

#include <string>

namespace CLI {
class App;
}

namespace orn {

/// `hearing-test conformance`: every cell of the grid rendered, measured and held against the limits for audiometers.
class ConformanceCommand {
 public:
  /// Adds the command and its flags to the program's.
  explicit ConformanceCommand(CLI::App& app);

  /// The exit code: 0 once everything has been measured, whatever was found. Throws std::runtime_error with one line on
  /// a failure.
  int run();

 private:
  std::string path_ = "both";
  std::string calibration_;
  bool json_ = false;
};

}  // namespace orn
