#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// What a player's pan and volume make of its samples in each channel.
struct StereoGain {
  float left = 1;   ///< Of the left channel.
  float right = 1;  ///< Of the right channel.

  /// The channel on the pan's own side keeps the volume; the other one loses what the pan takes from it.
  static StereoGain of(float pan, float volume) {
    const auto gain = [volume](float share) { return std::isfinite(volume * share) ? volume * share : 0.0F; };
    return {gain(std::clamp(1 - pan, 0.0F, 1.0F)), gain(std::clamp(1 + pan, 0.0F, 1.0F))};
  }
};

/// A volume from 0 to 1: beyond that the nearer end counts, and NaN is silence.
inline float volumeInRange(float volume) { return std::isnan(volume) ? 0.0F : std::clamp(volume, 0.0F, 1.0F); }

/// A sample times a gain, to the nearest 16-bit value, halves away from zero; beyond the range it clips.
inline std::int32_t scaledSample(std::int16_t sample, float gain) {
  // The greatest value below a half: with a half itself, the value just below one half would be rounded up in the sum.
  constexpr float half = 0.49999997F;
  const float value = std::clamp(static_cast<float>(sample) * gain, -32768.0F, 32767.0F);
  return static_cast<std::int32_t>(value + (value < 0 ? -half : half));
}

/// Adds samples times a gain to as many sums; at gain 1 and 0 nothing is rounded.
inline void addScaled(std::span<const std::int16_t> samples, float gain, std::span<std::int32_t> sums) {
  if (gain == 0) return;
  if (gain == 1) {
    for (std::size_t i = 0; i < samples.size(); ++i) sums[i] += samples[i];
  } else {
    for (std::size_t i = 0; i < samples.size(); ++i) sums[i] += scaledSample(samples[i], gain);
  }
}

}  // namespace orn
