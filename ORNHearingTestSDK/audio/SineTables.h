#pragma once

#include <ORNHearingTestSDK/platform/Export.h>

#ifdef __cplusplus
#include <cstdint>
#include <optional>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>

extern "C" {
#endif

// One cycle of a sine at 48000 Hz as signed 16-bit little-endian samples: entry n of N is A sin(2 pi n / N) rounded to
// the nearest integer, halves away from zero. Read-only: any thread.

/// A = 32767.
ORN_EXPORT extern const unsigned char WAV_b_125_DATA[768];
ORN_EXPORT extern const unsigned char WAV_b_250_DATA[384];
ORN_EXPORT extern const unsigned char WAV_b_500_DATA[192];
ORN_EXPORT extern const unsigned char WAV_b_1000_DATA[96];
ORN_EXPORT extern const unsigned char WAV_b_2000_DATA[48];
ORN_EXPORT extern const unsigned char WAV_b_4000_DATA[24];
ORN_EXPORT extern const unsigned char WAV_b_8000_DATA[12];

/// A = 327.67, 40 dB below.
ORN_EXPORT extern const unsigned char WAV_b_l_125_DATA[768];
ORN_EXPORT extern const unsigned char WAV_b_l_250_DATA[384];
ORN_EXPORT extern const unsigned char WAV_b_l_500_DATA[192];
ORN_EXPORT extern const unsigned char WAV_b_l_1000_DATA[96];
ORN_EXPORT extern const unsigned char WAV_b_l_2000_DATA[48];
ORN_EXPORT extern const unsigned char WAV_b_l_4000_DATA[24];
ORN_EXPORT extern const unsigned char WAV_b_l_8000_DATA[12];

#ifdef __cplusplus
}

namespace orn {

/// `size` in bytes; `data` stays valid for the whole process.
struct SineTable {
  const std::uint8_t* data;  ///< The samples, little-endian.
  std::int32_t size;         ///< Their number of bytes.
};

/// The full-level table of one of the kToneFrequencies, nothing for any other.
ORN_EXPORT std::optional<SineTable> sineTable(std::int32_t hz);

}  // namespace orn
#endif
