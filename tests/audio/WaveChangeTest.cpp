#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveChange.h>
#include <ORNHearingTestSDK/audio/WaveScaling.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

#include "SampleBytes.h"

namespace orn {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// Takes over a result, of which `size` bytes count.
Bytes taken(std::uint8_t* block, std::int64_t size) {
  const std::unique_ptr<std::uint8_t, decltype(&freeWaveData)> owner(block, freeWaveData);
  EXPECT_NE(block, nullptr);
  return block ? Bytes(block, block + size) : Bytes();
}

std::int64_t length(const Bytes& bytes) { return static_cast<std::int64_t>(bytes.size()); }

Samples scaled(const Samples& cycle, float amplitude) {
  const Bytes in = bytesOf(cycle);
  return samplesOf(taken(creatWaveData(in.data(), length(in), amplitude), length(in)));
}

Samples ramped(const Samples& cycle, int times, float start, float end) {
  const Bytes in = bytesOf(cycle);
  return samplesOf(taken(creatWaveDataF(in.data(), length(in), times, start, end), length(in) * times));
}

Samples byTimes(const Samples& cycle, float start, float end, int steady, int ramp) {
  const Bytes in = bytesOf(cycle);
  return samplesOf(
      taken(creatWaveDataByTimes(in.data(), length(in), start, end, steady, ramp), length(in) * (steady + ramp)));
}

/// The ramp in the order of its definition, every operation rounded on its own.
Bytes expectedRamp(const Bytes& in, int repetitions, float start, float end) {
  const Samples samples = samplesOf(in);
  Samples out;
  const auto rounded = [](float value) {
    const volatile float stored = value;
    return stored;
  };
  const float step = rounded(end - start) / static_cast<float>(repetitions);
  for (int k = 0; k < repetitions; ++k) {
    const float base = rounded(step * static_cast<float>(k)) + start;
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const float share = rounded(step * static_cast<float>(2 * i)) / static_cast<float>(in.size());
      const float product = rounded(base + rounded(share)) * static_cast<float>(samples[i]);
      const double whole = std::trunc(static_cast<double>(product));
      out.push_back(static_cast<std::int16_t>(whole >= -0x1p31 && whole < 0x1p31 ? static_cast<int>(whole) : 0));
    }
  }
  return bytesOf(out);
}

Bytes noise(std::size_t size) {
  Bytes bytes;
  for (std::uint32_t state = 1; bytes.size() < size;) {
    state = state * 1664525 + 1013904223;
    bytes.push_back(static_cast<std::uint8_t>(state >> 24));
  }
  return bytes;
}

class RampTest : public testing::TestWithParam<WaveKernel> {
 protected:
  void SetUp() override {
    if (!isAvailable(GetParam())) GTEST_SKIP() << "not on this processor";
  }

  void expectExact(const Bytes& in, int repetitions, float start, float end) {
    const Bytes expected = expectedRamp(in, repetitions, start, end);
    Bytes out(expected.size(), 0xAA);
    rampCycles(in.data(), length(in), repetitions, start, end, out.data(), GetParam());
    EXPECT_EQ(out, expected) << in.size() << " bytes, " << repetitions << " times, " << start << " to " << end;
  }
};

INSTANTIATE_TEST_SUITE_P(Kernels, RampTest, testing::Values(WaveKernel::Baseline, WaveKernel::Avx2),
                         [](const auto& kernel) { return kernel.param == WaveKernel::Avx2 ? "Avx2" : "Baseline"; });

TEST_P(RampTest, IsExactForEveryTableLengthAndParity) {
  constexpr struct {
    float start, end;
  } gains[] = {{0.0F, 1.0F},  {1.0F, 0.0F},          {0.37F, 0.37F},    {0.1F, 0.1003F},   {1.0F, 3.0F},
               {-0.5F, 0.5F}, {65000.0F, -65000.0F}, {0.0F, 100000.0F}, {0.0F, kInfinity}, {3e38F, -3e38F}};
  for (const int hz : kToneFrequencies) {
    const auto table = sineTable(hz);
    ASSERT_TRUE(table);
    const Bytes in(table->data, table->data + table->size);
    for (const auto [start, end] : gains) {
      for (const int repetitions : {1, 3, kBlockBytes / table->size}) expectExact(in, repetitions, start, end);
    }
  }
  for (const std::size_t size : {1U, 2U, 3U, 7U, 10U, 93U, 94U, 95U, 96U, 97U, 767U, 769U, 770U, 771U, 2001U}) {
    for (const int repetitions : {1, 2, 49, 100}) expectExact(noise(size), repetitions, 0.9F, 0.1F);
  }
}

TEST(WaveChange, TruncatesTowardZeroAndWraps) {
  EXPECT_THAT(scaled({3, -3, 0, 32767, -32768}, 0.5F), ElementsAre(1, -1, 0, 16383, -16384));
  EXPECT_THAT(scaled({3, -3, 32767, -32768}, 1.0F), ElementsAre(3, -3, 32767, -32768));
  EXPECT_THAT(scaled({32767, -32767, 20000}, 2.0F), ElementsAre(-2, 2, -25536));
  EXPECT_THAT(scaled({32767, -32767, 1}, 65540.0F), ElementsAre(0, 0, 4));  // beyond 32 bits: 0
  EXPECT_THAT(scaled({1, -1, 0}, std::nanf("")), Each(0));
}

TEST(WaveChange, LinearRampMovesAtEverySample) {
  EXPECT_THAT(ramped({1000, 1000, 1000, 1000}, 1, 0.0F, 1.0F), ElementsAre(0, 250, 500, 750));
  EXPECT_THAT(ramped({1000, 1000, -1000, 1000}, 2, 1.0F, 0.0F), ElementsAre(1000, 875, -750, 625, 500, 375, -250, 125));
  EXPECT_EQ(ramped({1000, -777, 32767, 5}, 1, 0.37F, 0.37F), scaled({1000, -777, 32767, 5}, 0.37F));
}

TEST(WaveChange, StairRisesFromZeroWhicheverAmplitudeIsLarger) {
  EXPECT_THAT(byTimes({1000, -7}, 0.0F, 1.0F, 1, 2), ElementsAre(0, 0, 500, -3, 1000, -7));
  EXPECT_THAT(byTimes({1000, -7}, 1.0F, 0.5F, 2, 2), ElementsAre(0, 0, 250, -1, 500, -3, 500, -3));
  EXPECT_THAT(byTimes({1000, -7}, 0.8F, 0.5F, 2, 0), ElementsAre(500, -3, 500, -3));
  EXPECT_THAT(byTimes({32767}, 0.0F, 4.0F, 0, 2), ElementsAre(0, -2));
  // The step is a little short of a hundredth; only the wider product of the stair can tell.
  EXPECT_THAT(byTimes({100}, 0.0F, 0.02F, 0, 2), ElementsAre(0, 0));
}

TEST(WaveChange, OddSizesStayInsideTheirBuffers) {
  const Bytes in{0x10, 0x00, 0xF0};
  EXPECT_THAT(taken(creatWaveData(in.data(), 3, 1.0F), 4), ElementsAre(0x10, 0, 0xF0, 0));
  EXPECT_THAT(taken(creatWaveDataF(in.data(), 3, 2, 1.0F, 1.0F), 8), ElementsAre(0x10, 0, 0xF0, 0, 0x10, 0, 0xF0, 0));
  // The ramp's cycles start at even places, the steady ones follow without a gap.
  EXPECT_THAT(taken(creatWaveDataByTimes(in.data(), 3, 0.0F, 1.0F, 2, 1), 10),
              ElementsAre(0, 0, 0, 0, 0x10, 0, 0xF0, 0x10, 0, 0xF0));
}

TEST(WaveChange, HeaderHasFortyFourLittleEndianBytes) {
  const std::string expected("RIFF\x24\x77\1\0WAVEfmt \x10\0\0\0\1\0\1\0\x80\xBB\0\0\0\x77\1\0\2\0\x10\0data\0\x77\1\0",
                             44);
  EXPECT_EQ(getWaveHeaderSize(), 44);
  EXPECT_EQ(taken(createWaveHeader(96000, 1, 48000, 16), 44), Bytes(expected.begin(), expected.end()));
}

TEST(WaveChange, NullInputAndImpossibleSizesGiveNull) {
  const Bytes in(2);
  constexpr auto huge = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(creatWaveData(nullptr, 2, 1.0F), nullptr);
  EXPECT_EQ(creatWaveDataByTimes(in.data(), huge / 2, 0.0F, 1.0F, 2, 1), nullptr);
  taken(creatWaveDataByTimes(in.data(), 2, 0.0F, 1.0F, -1, -1), 0);
}

}  // namespace
}  // namespace orn
