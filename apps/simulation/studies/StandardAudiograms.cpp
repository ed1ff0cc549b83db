#include "simulation/studies/StandardAudiograms.h"

#include <algorithm>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>

namespace orn::simulation {

std::map<std::int32_t, double> thresholdsOf(const StandardAudiogram& audiogram) {
  const auto& frequencies = kStandardAudiogramFrequencies;
  std::map<std::int32_t, double> thresholds;
  for (const std::int32_t hz : kToneFrequencies) {
    const auto inTable = std::clamp(hz, frequencies.front(), frequencies.back());
    const auto column = std::find(frequencies.begin(), frequencies.end(), inTable) - frequencies.begin();
    thresholds[hz] = audiogram.levels[static_cast<std::size_t>(column)];
  }
  return thresholds;
}

}  // namespace orn::simulation
