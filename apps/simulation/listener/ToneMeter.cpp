#include "simulation/listener/ToneMeter.h"

#include <cmath>
#include <numbers>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn::simulation {
namespace {

// A sine that never reaches half of the last bit can't be in the samples; anything weaker is rounding.
constexpr double kLeastAmplitude = 0.1 / 32767;

}  // namespace

ToneMeter::ToneMeter() {
  for (std::size_t n = 0; n < kFold; ++n) {
    for (std::size_t f = 0; f < kToneFrequencies.size(); ++f) {
      const double turns = static_cast<double>(n) * kToneFrequencies[f] / kSampleRate;
      waves_[n][2 * f] = static_cast<float>(std::cos(2 * std::numbers::pi * turns));
      waves_[n][2 * f + 1] = static_cast<float>(std::sin(2 * std::numbers::pi * turns));
    }
  }
}

std::array<ToneReading, 2> ToneMeter::measure(std::span<const std::int16_t, 2 * kWindowFrames> window) {
  std::array<std::int32_t, 2 * kFold> folded{};
  for (std::size_t start = 0; start < window.size(); start += folded.size()) {
    for (std::size_t i = 0; i < folded.size(); ++i) folded[i] += window[start + i];
  }
  return {strongestIn(folded, 0), strongestIn(folded, 1)};
}

ToneReading ToneMeter::strongestIn(std::span<const std::int32_t> folded, std::size_t channel) const {
  std::array<float, kLanes> sums{};
  for (std::size_t n = 0; n < kFold; ++n) {
    const auto sample = static_cast<float>(folded[2 * n + channel]);
    if (sample == 0) continue;
    for (std::size_t lane = 0; lane < kLanes; ++lane) sums[lane] += sample * waves_[n][lane];
  }
  ToneReading strongest;
  for (std::size_t f = 0; f < kToneFrequencies.size(); ++f) {
    const double amplitude = std::hypot(sums[2 * f], sums[2 * f + 1]) * 2.0 / kWindowFrames / 32767.0;
    if (amplitude > strongest.amplitude) strongest = {kToneFrequencies[f], amplitude};
  }
  return strongest.amplitude < kLeastAmplitude ? ToneReading{} : strongest;
}

}  // namespace orn::simulation
