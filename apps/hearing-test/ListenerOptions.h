#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulation/VirtualListener.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace orn {

/// The flags that say what a virtual listener is like.
class ListenerOptions {
 public:
  /// Adds the flags to a command.
  void addTo(CLI::App& command);

  /// Somebody with a mild loss where no thresholds are given at all.
  simulation::ListenerTraits traits() const;

 private:
  std::vector<std::string> left_, right_;
  double slope_ = 0, guess_ = 0, lapse_ = 0;
  std::uint64_t seed_ = 1;
};

/// Adds --frequencies, in Hz and in test order, to a command. The option holds texts such as "1000".
CLI::Option* addFrequencies(CLI::App& command, std::vector<std::string>& frequencies);

/// The frequency keys of such texts.
std::vector<std::string> frequencyKeys(const std::vector<std::string>& frequencies);

}  // namespace orn
