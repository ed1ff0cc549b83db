#include "simulation/listener/Chance.h"

#include <cmath>
#include <numbers>

namespace orn::simulation {
namespace {

// The finishing step of SplitMix64 (Steele, Lea, Flood 2014).
std::uint64_t mixed(std::uint64_t bits) {
  bits = (bits ^ bits >> 30) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ bits >> 27) * 0x94D049BB133111EBU;
  return bits ^ bits >> 31;
}

}  // namespace

// Box and Muller 1958.
double Chance::normal() {
  const double radius = std::sqrt(-2 * std::log(1 - uniform()));
  return radius * std::cos(2 * std::numbers::pi * uniform());
}

std::uint64_t derivedSeed(std::uint64_t seed, std::uint64_t index) {
  return mixed(mixed(seed + 0x9E3779B97F4A7C15U) + index + 1);
}

}  // namespace orn::simulation
