#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace orn::simulation {

inline constexpr double kFullScale = 32767;  ///< The largest sample.

/// A tone as its samples show it.
struct ToneFigures {
  double amplitude = 0;  ///< Of the sine in the steady part, relative to kFullScale.
  double hz = 0;
  double distortion = 0;   ///< Total harmonic distortion: all harmonics below 24 kHz beside the sine, 0 to 1.
  double riseSeconds = 0;  ///< From 20 dB below the steady level to 1 dB below it (IEC 60645-1).
  double fallSeconds = 0;  ///< From 1 dB below it to 20 dB below it.
  double overshoot = 0;    ///< The loudest cycle of all above the steady level, in dB.

  /// The largest change from a cycle of the steady part to the next beyond the 2 steps that rounding to 16 bits can
  /// make, relative to the amplitude: what a loop or the blocks of a stream leave where their ends meet.
  double seam = 0;
};

/// The frames in which the tone is certainly steady.
struct SteadyPart {
  std::size_t first = 0, frames = 0;
};

/// Measures a tone, switched on and off once, of about `hz`, one of the seven test frequencies; its times are exact if
/// its fades take longer than a cycle. The steady part must hold whole cycles. Nothing if there is no tone in it.
std::optional<ToneFigures> analysed(std::span<const std::int16_t> samples, std::int32_t hz, SteadyPart steady);

}  // namespace orn::simulation
