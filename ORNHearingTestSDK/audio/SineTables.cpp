#include <ORNHearingTestSDK/audio/SineTables.h>

#include <numbers>

namespace {

// Every table is the 125 Hz one with samples left out, so an angle is a whole number of 384ths of a turn.
constexpr int kTurn = 384;

// From 0 to a quarter turn.
consteval long double sineOfFirstQuadrant(int angle) {
  if (angle == kTurn / 12) return 0.5L;  // exact, as it decides a rounding
  const long double x = 2 * std::numbers::pi_v<long double> * angle / kTurn;
  long double sum = 0;
  long double term = x;
  for (int n = 1; n < 32; n += 2) {
    sum += term;
    term *= -x * x / (((n) + 1) * ((n) + 2));
  }
  return sum;
}

consteval int sampleOf(long double peak, int angle) {
  const int half = angle % (kTurn / 2);
  const int quarter = half > kTurn / 4 ? kTurn / 2 - half : half;
  const int size = static_cast<int>(peak * sineOfFirstQuadrant(quarter) + 0.5L);
  return angle < kTurn / 2 ? size : -size;
}

consteval unsigned char byteOf(int sample, int shift) { return static_cast<unsigned char>(sample >> shift & 0xFF); }

}  // namespace

// The entries of a table: its peak, the angle from one entry to the next, and the first entry's number.
#define ORN_1(peak, angle, n) byteOf(sampleOf(peak, (angle) * (n)), 0), byteOf(sampleOf(peak, (angle) * (n)), 8)
#define ORN_3(peak, angle, n) ORN_1(peak, angle, n), ORN_1(peak, angle, (n) + 1), ORN_1(peak, angle, (n) + 2)
#define ORN_6(peak, angle, n) ORN_3(peak, angle, n), ORN_3(peak, angle, (n) + 3)
#define ORN_12(peak, angle, n) ORN_6(peak, angle, n), ORN_6(peak, angle, (n) + 6)
#define ORN_24(peak, angle, n) ORN_12(peak, angle, n), ORN_12(peak, angle, (n) + 12)
#define ORN_48(peak, angle, n) ORN_24(peak, angle, n), ORN_24(peak, angle, (n) + 24)
#define ORN_96(peak, angle, n) ORN_48(peak, angle, n), ORN_48(peak, angle, (n) + 48)
#define ORN_192(peak, angle, n) ORN_96(peak, angle, n), ORN_96(peak, angle, (n) + 96)
#define ORN_384(peak, angle, n) ORN_192(peak, angle, n), ORN_192(peak, angle, (n) + 192)

#define ORN_TABLES(hz, entries)                                                                                     \
  constinit const unsigned char WAV_b_##hz##_DATA[2 * (entries)] = {ORN_##entries(32767.0L, kTurn / (entries), 0)}; \
  constinit const unsigned char WAV_b_l_##hz##_DATA[2 * (entries)] = {ORN_##entries(327.67L, kTurn / (entries), 0)};

ORN_TABLES(125, 384)
ORN_TABLES(250, 192)
ORN_TABLES(500, 96)
ORN_TABLES(1000, 48)
ORN_TABLES(2000, 24)
ORN_TABLES(4000, 12)
ORN_TABLES(8000, 6)

namespace orn {

std::optional<SineTable> sineTable(std::int32_t hz) {
#define ORN_TABLE(frequency) \
  if (hz == (frequency)) return SineTable{WAV_b_##frequency##_DATA, sizeof WAV_b_##frequency##_DATA};
  ORN_TABLE(125)
  ORN_TABLE(250)
  ORN_TABLE(500)
  ORN_TABLE(1000)
  ORN_TABLE(2000)
  ORN_TABLE(4000)
  ORN_TABLE(8000)
#undef ORN_TABLE
  return std::nullopt;
}

}  // namespace orn
