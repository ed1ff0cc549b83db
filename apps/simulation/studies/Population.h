#pragma once

#include <chrono>
#include <cstdint>

#include "simulation/listener/VirtualListener.h"

namespace orn::simulation {

/// What the listeners of a study are drawn from.
struct Population {
  enum class Thresholds {
    Uniform,            ///< From `lowest` to `highest`, each ear independently.
    StandardAudiograms  ///< The ten shapes in turn, the same for both ears.
  };

  Thresholds thresholds = Thresholds::Uniform;
  double lowest = -5, highest = 85;  ///< dB HL
  double correlation = 0.8;          ///< Of the thresholds at neighbouring frequencies, from 0 to 1.
  bool isOnGrid = false;             ///< Thresholds are whole steps of 5 dB.

  double slope = 0.6;  ///< Per dB; 0 is a perfect listener.
  double guess = 0.02, lapse = 0.02;

  /// A listener's median reaction time is uniform between these; the single presses spread about it log-normally.
  std::chrono::milliseconds quickest{300}, slowest{700};
  double reactionSpread = 0.25;  ///< Standard deviation of the natural logarithm.
};

/// The listener of an index, which depends on the seed and the index alone.
ListenerTraits listenerOf(const Population& population, std::uint64_t seed, std::uint64_t index);

}  // namespace orn::simulation
