#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace orn {

using Bytes = std::vector<std::uint8_t>;
using Samples = std::vector<std::int16_t>;

/// Samples as a stream of 16-bit little-endian bytes, and back; what is missing of the last sample counts as 0.
inline Bytes bytesOf(const Samples& samples) {
  Bytes bytes;
  for (const std::int16_t sample : samples) {
    bytes.push_back(static_cast<std::uint8_t>(sample));
    bytes.push_back(static_cast<std::uint8_t>(sample >> 8));
  }
  return bytes;
}

inline Samples samplesOf(std::span<const std::uint8_t> bytes) {
  Samples samples;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    samples.push_back(static_cast<std::int16_t>(bytes[i] | (i + 1 < bytes.size() ? bytes[i + 1] : 0) << 8));
  }
  return samples;
}

}  // namespace orn
