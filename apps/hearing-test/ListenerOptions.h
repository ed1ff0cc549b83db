#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulation/listener/VirtualListener.h"

namespace CLI {
class App;
}

namespace orn {

/// The options that describe a virtual listener.
class ListenerOptions {
 public:
  /// Adds the options to a command.
  void addTo(CLI::App& command);

  /// With a mild loss if no thresholds are given at all.
  simulation::ListenerTraits traits() const;

 private:
  std::vector<std::string> left_, right_;
  double slope_ = 0, guess_ = 0, lapse_ = 0;
  std::uint64_t seed_ = 1;
};

}  // namespace orn
