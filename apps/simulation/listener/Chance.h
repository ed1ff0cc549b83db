#pragma once

#include <cstdint>
#include <random>

namespace orn::simulation {

/// Random numbers that are the same on every machine for the same seed, which the standard's distributions don't
/// promise. One thread.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : bits_(seed) {}

  /// From 0 to just below 1.
  double uniform() { return static_cast<double>(bits_() >> 11) * 0x1p-53; }

  /// Of mean 0 and standard deviation 1.
  double normal();

 private:
  std::mt19937_64 bits_;
};

/// A seed for one of many things that share a seed, such as the listeners of a study.
std::uint64_t derivedSeed(std::uint64_t seed, std::uint64_t index);

}  // namespace orn::simulation
