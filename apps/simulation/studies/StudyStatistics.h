#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "simulation/studies/Study.h"

namespace orn::simulation {

/// Of the thresholds found minus the true ones, in dB. The standard deviation is about the bias.
struct ErrorStatistics {
  double bias = 0, meanAbsolute = 0, deviation = 0;
  double within5 = 0, within10 = 0;  ///< Shares, 0 to 1.
};

/// The mean, and the smallest value that 95 % of all don't exceed.
struct Spread {
  double mean = 0, p95 = 0;
};

/// Of one frequency, or of all of them.
struct StudyStatistics {
  std::int32_t hz = 0;         ///< 0: all frequencies.
  std::size_t thresholds = 0;  ///< How many there are; each was measured twice.
  ErrorStatistics onScale;     ///< Against the threshold, limited to the levels that the test can report.
  ErrorStatistics plain;       ///< Against the threshold as it is.
  double retestBias = 0, retestDeviation = 0;  ///< Of the second minus the first, in dB.
  Spread presentations, minutes;               ///< Of a frequency of an ear; overall, of a test of both ears.
};

/// One for each frequency, ascending, and at the end the one for all of them.
std::vector<StudyStatistics> statisticsOf(const StudyPlan& plan, const std::vector<StudiedListener>& listeners);

}  // namespace orn::simulation
