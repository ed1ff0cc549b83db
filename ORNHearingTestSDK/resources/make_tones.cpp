// Writes the fourteen tone files of wav.bundle into the folder named on the command line: of each frequency one at full
// level, "40+n.wav", and one exactly 40 dB below it, "40-n.wav".

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveChange.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace {

// 0.8 s: whole cycles of every frequency, and of each a whole number of hundreds for the lower level.
constexpr std::int32_t kToneSamples = 10 * orn::kBlockSamples;

std::int32_t hundredth(std::int32_t total) { return (total + (total < 0 ? -50 : 50)) / 100; }

// A sample of the lower level is what the running total of its place in the cycle, divided by 100, has not written yet:
// so 100 cycles hold exactly what one holds at full level, which rounding each on its own would miss.
std::int32_t lowered(std::int32_t sample, std::int32_t cycle) {
  return hundredth((cycle + 1) * sample) - hundredth(cycle * sample);
}

std::vector<char> tone(const orn::SineTable& table, bool low) {
  std::vector<char> bytes;
  bytes.reserve(std::size_t{2} * kToneSamples);
  const std::int32_t length = table.size / 2;
  for (std::int32_t i = 0; i < kToneSamples; ++i) {
    const std::uint8_t* at = table.data + std::ptrdiff_t{2} * (i % length);
    const auto full = static_cast<std::int16_t>(at[0] | at[1] << 8);
    const std::int32_t sample = low ? lowered(full, i / length) : full;
    bytes.push_back(static_cast<char>(sample & 0xFF));
    bytes.push_back(static_cast<char>(sample >> 8 & 0xFF));
  }
  return bytes;
}

bool writeTone(const std::string& path, const std::vector<char>& samples) {
  std::uint8_t* header = createWaveHeader(static_cast<std::uint32_t>(samples.size()), 1, orn::kSampleRate, 16);
  if (!header) return false;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(header), getWaveHeaderSize());
  freeWaveHeader(header);
  file.write(samples.data(), static_cast<std::streamsize>(samples.size()));
  file.close();
  return !file.fail();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_tones FOLDER\n");
    return 1;
  }
  for (std::size_t n = 0; n < orn::kToneFrequencies.size(); ++n) {
    const auto table = orn::sineTable(orn::kToneFrequencies[n]);
    for (const bool low : {false, true}) {
      const std::string path = std::string(argv[1]) + (low ? "/40-" : "/40+") + std::to_string(n) + ".wav";
      if (!table || !writeTone(path, tone(*table, low))) {
        std::fprintf(stderr, "make_tones: cannot write %s\n", path.c_str());
        return 1;
      }
    }
  }
}
