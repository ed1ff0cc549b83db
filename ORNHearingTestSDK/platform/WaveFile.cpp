#include <ORNHearingTestSDK/platform/WaveFile.h>

#include <cstring>

#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn {
namespace {

std::uint32_t littleEndian(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t width) {
  std::uint32_t value = 0;
  for (std::size_t i = width; i-- > 0;) value = value << 8 | bytes[at + i];
  return value;
}

bool hasName(std::span<const std::uint8_t> bytes, std::size_t at, const char* name) {
  return std::memcmp(bytes.data() + at, name, 4) == 0;
}

bool isToneFormat(std::span<const std::uint8_t> chunk) {
  return chunk.size() >= 16 && littleEndian(chunk, 0, 2) == 1 && littleEndian(chunk, 2, 2) == 1 &&
         littleEndian(chunk, 4, 4) == kSampleRate && littleEndian(chunk, 14, 2) == 16;
}

std::vector<std::int16_t> samplesOf(std::span<const std::uint8_t> data) {
  std::vector<std::int16_t> samples(data.size() / 2);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    samples[i] = static_cast<std::int16_t>(littleEndian(data, 2 * i, 2));
  }
  return samples;
}

}  // namespace

std::optional<std::vector<std::int16_t>> samplesOfWaveFile(std::span<const std::uint8_t> file) {
  constexpr std::size_t fileHeader = 12, chunkHeader = 8;
  if (file.size() < fileHeader || !hasName(file, 0, "RIFF") || !hasName(file, 8, "WAVE")) return std::nullopt;
  bool knownFormat = false;
  for (std::size_t at = fileHeader; at + chunkHeader <= file.size();) {
    const std::size_t size = littleEndian(file, at + 4, 4);
    const std::size_t body = at + chunkHeader;
    if (size > file.size() - body) return std::nullopt;
    const auto chunk = file.subspan(body, size);
    if (hasName(file, at, "fmt ")) knownFormat = isToneFormat(chunk);
    if (hasName(file, at, "data")) return knownFormat ? std::optional(samplesOf(chunk)) : std::nullopt;
    at = body + size + size % 2;
  }
  return std::nullopt;
}

}  // namespace orn
