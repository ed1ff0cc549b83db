#pragma once

#include <chrono>
#include <cstdint>

namespace orn {

/// Every computed sound: signed 16-bit little-endian mono samples at 48000 Hz. A block of the stream is 80 ms.
inline constexpr std::int32_t kSampleRate = 48000;
inline constexpr std::int32_t kBlockSamples = 3840;
inline constexpr std::int32_t kBlockBytes = 2 * kBlockSamples;
inline constexpr std::chrono::milliseconds kBlockTime{80};

}  // namespace orn
