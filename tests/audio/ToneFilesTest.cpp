#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveChange.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

#include "SampleBytes.h"

namespace orn {
namespace {

constexpr std::size_t kSamples = 38400;

/// A file of the bundle without its header, which is the one that every such file has.
Samples tone(const std::string& name) {
  std::ifstream file(std::string(ORN_WAV_BUNDLE "/") + name + ".wav", std::ios::binary);
  const Bytes bytes{std::istreambuf_iterator<char>(file), {}};
  const std::unique_ptr<std::uint8_t, decltype(&freeWaveHeader)> header(createWaveHeader(2 * kSamples, 1, 48000, 16),
                                                                        freeWaveHeader);
  EXPECT_TRUE(bytes.size() == 44 + 2 * kSamples && std::equal(header.get(), header.get() + 44, bytes.begin())) << name;
  return samplesOf(std::span(bytes).subspan(std::min<std::size_t>(44, bytes.size())));
}

TEST(ToneFiles, AreTheTableThroughTheSeamAndAHundredthOfItAtEveryPlaceOfTheCycle) {
  for (std::size_t number = 0; number < kToneFrequencies.size(); ++number) {
    const Samples up = tone("40+" + std::to_string(number)), down = tone("40-" + std::to_string(number));
    ASSERT_FALSE(HasFailure());
    const auto table = sineTable(kToneFrequencies[number]);
    ASSERT_TRUE(table);
    const Samples samples = samplesOf({table->data, static_cast<std::size_t>(table->size)});
    const std::size_t cycle = samples.size();
    for (std::size_t i = 0; i < kSamples + cycle; ++i) {
      ASSERT_EQ(up[i % kSamples], samples[i % cycle]) << number << " at " << i;
    }
    for (std::size_t from = 0; from < kSamples; from += 100 * cycle) {
      for (std::size_t place = 0; place < cycle; ++place) {
        int sum = 0;
        for (std::size_t k = 0; k < 100; ++k) {
          const int sample = down[from + k * cycle + place];
          ASSERT_LE(std::abs(sample - up[place] / 100.0), 1.0);
          sum += sample;
        }
        ASSERT_EQ(sum, up[place]) << number << ", place " << place << " of the cycles from " << from;
      }
    }
  }
}

}  // namespace
}  // namespace orn
