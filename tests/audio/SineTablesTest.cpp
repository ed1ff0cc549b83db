#include <cmath>
#include <numbers>
#include <span>

#include <gmock/gmock.h>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

#include "SampleBytes.h"

namespace {

struct Table {
  int hz;
  std::span<const unsigned char> full;
  std::span<const unsigned char> low;
};

const Table kTables[] = {{125, WAV_b_125_DATA, WAV_b_l_125_DATA},    {250, WAV_b_250_DATA, WAV_b_l_250_DATA},
                         {500, WAV_b_500_DATA, WAV_b_l_500_DATA},    {1000, WAV_b_1000_DATA, WAV_b_l_1000_DATA},
                         {2000, WAV_b_2000_DATA, WAV_b_l_2000_DATA}, {4000, WAV_b_4000_DATA, WAV_b_l_4000_DATA},
                         {8000, WAV_b_8000_DATA, WAV_b_l_8000_DATA}};

/// The rule by the standard library's sine; the exact halves, where its rounding is in doubt, are handled apart.
long expected(long double peak, std::size_t n, std::size_t length) {
  const std::size_t twelfths = 12 * n % length == 0 ? 12 * n / length : 0;
  const auto turn = 2 * std::numbers::pi_v<long double>;
  long double sine = std::sin(turn * static_cast<long double>(n) / static_cast<long double>(length));
  if (twelfths == 1 || twelfths == 5) sine = 0.5L;
  if (twelfths == 7 || twelfths == 11) sine = -0.5L;
  return std::lround(peak * sine);
}

TEST(SineTables, EveryEntryFollowsTheRule) {
  for (const auto& [hz, full, low] : kTables) {
    const auto length = static_cast<std::size_t>(orn::kSampleRate / hz);
    const orn::Samples loud = orn::samplesOf(full), quiet = orn::samplesOf(low);
    ASSERT_EQ(loud.size(), length);
    ASSERT_EQ(quiet.size(), length);
    for (std::size_t n = 0; n < length; ++n) {
      EXPECT_EQ(loud[n], expected(32767.0L, n, length)) << hz << " Hz, entry " << n;
      EXPECT_EQ(quiet[n], expected(327.67L, n, length)) << hz << " Hz at low level, entry " << n;
    }
  }
}

}  // namespace
