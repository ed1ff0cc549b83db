#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveChange.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace {

constexpr std::size_t kSamples = 38400;

struct Tone {
  std::string header;
  std::vector<int> samples;
};

Tone readTone(const std::string& name) {
  std::ifstream file(std::string(ORN_WAV_BUNDLE "/") + name + ".wav", std::ios::binary);
  EXPECT_TRUE(file) << name;
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  Tone tone{bytes.substr(0, 44), {}};
  for (std::size_t i = 44; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = static_cast<unsigned char>(bytes[i + 1]);
    tone.samples.push_back(static_cast<std::int16_t>(low | high << 8));
  }
  return tone;
}

TEST(ToneFiles, AreTheTableThroughTheSeamAndAHundredthOfItAtEveryPlaceOfTheCycle) {
  const std::unique_ptr<std::uint8_t, decltype(&freeWaveHeader)> header(createWaveHeader(2 * kSamples, 1, 48000, 16),
                                                                        freeWaveHeader);
  for (std::size_t number = 0; number < orn::kToneFrequencies.size(); ++number) {
    const Tone up = readTone("40+" + std::to_string(number)), down = readTone("40-" + std::to_string(number));
    for (const Tone* tone : {&up, &down}) {
      ASSERT_EQ(tone->header, std::string(header.get(), header.get() + 44));
      ASSERT_EQ(tone->samples.size(), kSamples);
    }
    const auto table = orn::sineTable(orn::kToneFrequencies[number]);
    ASSERT_TRUE(table);
    const auto cycle = static_cast<std::size_t>(table->size) / 2;
    for (std::size_t i = 0; i < kSamples + cycle; ++i) {
      const std::uint8_t* at = table->data + 2 * (i % cycle);
      ASSERT_EQ(up.samples[i % kSamples], static_cast<std::int16_t>(at[0] | at[1] << 8)) << number << " at " << i;
    }
    for (std::size_t from = 0; from < kSamples; from += 100 * cycle) {
      for (std::size_t place = 0; place < cycle; ++place) {
        int sum = 0;
        for (std::size_t k = 0; k < 100; ++k) {
          const int sample = down.samples[from + k * cycle + place];
          ASSERT_LE(std::abs(sample - up.samples[place] / 100.0), 1.0);
          sum += sample;
        }
        ASSERT_EQ(sum, up.samples[place]) << number << ", place " << place << " of the cycles from " << from;
      }
    }
  }
}

}  // namespace
