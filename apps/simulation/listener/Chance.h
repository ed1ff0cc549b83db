#pragma once

#include <cstdint>
#include <random>

namespace orn::simulation {

/// Random numbers that a seed gives alike on every machine, which the standard's distributions don't promise. One
/// thread.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : bits_(seed) {}

  /// From 0 to just below 1.
  double uniform() { return static_cast<double>(bits_() >> 11) * 0x1p-53; }

  /// Of mean 0 and deviation 1.
  double normal();

 private:
  std::mt19937_64 bits_;
};

/// A seed for one of many things that hang on one seed, such as the listeners of a study.
std::uint64_t derivedSeed(std::uint64_t seed, std::uint64_t index);

}  // namespace orn::simulation
