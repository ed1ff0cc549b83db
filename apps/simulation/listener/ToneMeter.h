#pragma once

#include <array>
#include <cstdint>
#include <span>

#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn::simulation {

/// The strongest of the seven test tones in a stretch of sound, and how strong it is.
struct ToneReading {
  std::int32_t hz = 0;   ///< 0: no tone.
  double amplitude = 0;  ///< Of the sine, relative to full scale (32767).
};

/// Measures tones by their energy at the seven test frequencies. The window is 3840 frames, 80 ms, which holds whole
/// cycles of each of them, so that none leaks into another. Value type; one thread.
class ToneMeter {
 public:
  static constexpr std::size_t kWindowFrames = kBlockSamples;

  ToneMeter();

  /// The readings of the left and the right channel in one window of interleaved samples.
  std::array<ToneReading, 2> measure(std::span<const std::int16_t, 2 * kWindowFrames> window);

 private:
  // All test frequencies are multiples of 125 Hz, so a window folds into one cycle of it without loss.
  static constexpr std::size_t kFold = kSampleRate / 125;
  static constexpr std::size_t kLanes = 16;  // cosine and sine of seven frequencies, and two lanes to spare

  ToneReading strongestIn(std::span<const std::int32_t> folded, std::size_t channel) const;

  std::array<std::array<float, kLanes>, kFold> waves_{};
};

}  // namespace orn::simulation
