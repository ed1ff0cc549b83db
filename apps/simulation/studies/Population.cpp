#include "simulation/studies/Population.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>

#include "simulation/listener/Chance.h"
#include "simulation/studies/StandardAudiograms.h"

namespace orn::simulation {
namespace {

double normalDistribution(double z) { return std::erfc(-z / std::numbers::sqrt2) / 2; }

/// A chain of normal values from one frequency to the next, each turned into a uniform one. Uniform values made so
/// correlate by r where the normal ones correlate by 2 sin(pi r / 6) (Pearson 1907).
std::map<std::int32_t, double> uniformThresholds(const Population& population, Chance& chance) {
  const double correlation = 2 * std::sin(std::numbers::pi * population.correlation / 6);
  std::map<std::int32_t, double> thresholds;
  double z = chance.normal();
  for (const std::int32_t hz : kToneFrequencies) {
    const double level = population.lowest + normalDistribution(z) * (population.highest - population.lowest);
    thresholds[hz] = population.isOnGrid ? std::round(level / 5) * 5 : level;
    z = correlation * z + std::sqrt(std::max(0.0, 1 - correlation * correlation)) * chance.normal();
  }
  return thresholds;
}

}  // namespace

ListenerTraits listenerOf(const Population& population, std::uint64_t seed, std::uint64_t index) {
  Chance chance(derivedSeed(seed, index));
  ListenerTraits traits;
  if (population.thresholds == Population::Thresholds::StandardAudiograms) {
    traits.left = traits.right = thresholdsOf(kStandardAudiograms[index % kStandardAudiograms.size()]);
  } else {
    traits.left = uniformThresholds(population, chance);
    traits.right = uniformThresholds(population, chance);
  }
  traits.slope = population.slope;
  traits.guess = population.guess;
  traits.lapse = population.lapse;
  const auto range = static_cast<double>((population.slowest - population.quickest).count());
  traits.reaction = population.quickest + std::chrono::milliseconds(std::llround(chance.uniform() * range));
  traits.reactionSpread = population.reactionSpread;
  return traits;
}

}  // namespace orn::simulation
