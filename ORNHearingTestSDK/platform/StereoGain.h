#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orn {

/// What a player's pan and volume make of its samples in each channel.
struct StereoGain {
  float left = 1;
  float right = 1;

  /// The channel on the pan's own side keeps the volume; the other one loses what the pan takes from it.
  static StereoGain of(float pan, float volume) {
    const auto gain = [volume](float share) { return std::isfinite(volume * share) ? volume * share : 0.0F; };
    return {gain(std::clamp(1 - pan, 0.0F, 1.0F)), gain(std::clamp(1 + pan, 0.0F, 1.0F))};
  }
};

/// A sample times a gain, to the nearest 16-bit value, halves away from zero; beyond the range it clips.
inline std::int32_t scaledSample(std::int16_t sample, float gain) {
  // The greatest value below a half: with a half itself, the value just below one half would be rounded up in the sum.
  constexpr float half = 0.49999997F;
  const float value = std::clamp(static_cast<float>(sample) * gain, -32768.0F, 32767.0F);
  return static_cast<std::int32_t>(value + (value < 0 ? -half : half));
}

}  // namespace orn
