#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "simulation/studies/Study.h"

namespace orn::simulation {

/// Of what was found less what is true, in dB. The deviation is that about the bias.
struct ErrorStatistics {
  double bias = 0, meanAbsolute = 0, deviation = 0;
  double within5 = 0, within10 = 0;  ///< Shares, 0 to 1.
};

/// Mean and the smallest value that 95 of 100 don't exceed.
struct Spread {
  double mean = 0, p95 = 0;
};

/// Of one frequency, or of all of them.
struct StudyStatistics {
  std::int32_t hz = 0;                         ///< 0: all frequencies.
  std::size_t thresholds = 0;                  ///< Each was found twice.
  ErrorStatistics onScale;                     ///< Against the threshold, held within what the test can report.
  ErrorStatistics plain;                       ///< Against the threshold as it is.
  double retestBias = 0, retestDeviation = 0;  ///< Of the second less the first, in dB.
  Spread presentations, minutes;               ///< A frequency of an ear; or, of all frequencies, a test of both ears.
};

/// One of each frequency, ascending, and that of all of them at the end.
std::vector<StudyStatistics> statisticsOf(const StudyPlan& plan, const std::vector<StudiedListener>& listeners);

}  // namespace orn::simulation
