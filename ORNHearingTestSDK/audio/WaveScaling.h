#pragma once

#include <cstdint>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// Gains on one cycle of signed 16-bit little-endian mono samples, in single precision. A product is truncated toward
// zero and kept to its lower 16 bits: it wraps, it does not clip. One outside the 32-bit range, or not a number, gives
// the sample 0. Sizes are in bytes; of a last sample cut short by an odd size the high byte reads as 0, and the output
// holds that sample whole, so it takes the size rounded up to even. A size or a count below 1 writes nothing. Input and
// output must not overlap. Nothing is allocated and no lock is taken; any thread.

/// One cycle times `amplitude`.
ORN_EXPORT void scaleCycle(const std::uint8_t* in, std::int64_t size, float amplitude, std::uint8_t* out);

/// One linear ramp of the gain from `start` over all `repetitions` of the cycle. It moves at every sample; the last one
/// is a sample's step short of `end`. The output takes `repetitions` times the size rounded up to even.
ORN_EXPORT void rampCycles(const std::uint8_t* in, std::int64_t size, std::int32_t repetitions, float start, float end,
                           std::uint8_t* out);

/// The same ramp, but a gain above 1, which would wrap, is 1.
ORN_EXPORT void rampWithinFullScale(const std::uint8_t* in, std::int64_t size, std::int32_t repetitions, float start,
                                    float end, std::uint8_t* out);

/// The forms in which the ramp is compiled; their results are equal to the bit.
enum class WaveKernel { Baseline, Avx2 };

ORN_EXPORT bool isAvailable(WaveKernel kernel);

/// The ramp in a form of the caller's choice, Baseline where the processor lacks it.
ORN_EXPORT void rampCycles(const std::uint8_t* in, std::int64_t size, std::int32_t repetitions, float start, float end,
                           std::uint8_t* out, WaveKernel kernel);

}  // namespace orn
