#include <ORNHearingTestSDK/audio/WaveChange.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <ORNHearingTestSDK/audio/WaveScaling.h>

namespace {

constexpr std::int32_t kHeaderSize = 44;
constexpr std::uint16_t kPcm = 1;

std::uint64_t evenSize(std::int64_t size) {
  const auto bytes = static_cast<std::uint64_t>(std::max<std::int64_t>(size, 0));
  return bytes + bytes % 2;
}

// Never asks malloc for 0 bytes, which it may answer with null.
std::uint8_t* allocate(std::int64_t size, std::int64_t count) {
  const std::uint64_t cycle = evenSize(size);
  const auto cycles = static_cast<std::uint64_t>(std::max<std::int64_t>(count, 0));
  constexpr std::uint64_t most = std::numeric_limits<std::ptrdiff_t>::max();
  if (cycles > 0 && cycle > most / cycles) return nullptr;
  return static_cast<std::uint8_t*>(std::malloc(static_cast<std::size_t>(std::max<std::uint64_t>(cycle * cycles, 1))));
}

std::uint8_t* put(std::uint8_t* out, const char (&id)[5]) {
  std::memcpy(out, id, 4);
  return out + 4;
}

template <typename Number>
std::uint8_t* put(std::uint8_t* out, Number number) {
  for (std::size_t i = 0; i < sizeof number; ++i) *out++ = static_cast<std::uint8_t>(number >> (8 * i));
  return out;
}

std::uint16_t truncated(double product) {
  constexpr double limit = 2147483648.0;
  // The border is one above the range of the truncated number, which is what counts.
  return product > -limit - 1 && product < limit ? static_cast<std::uint16_t>(static_cast<std::int32_t>(product)) : 0;
}

void scaleWidened(const std::uint8_t* in, std::int64_t size, double gain, std::uint8_t* out) {
  for (std::int64_t i = 0; i < size; i += 2) {
    const int high = i + 1 < size ? in[i + 1] : 0;
    put(out + i, truncated(gain * static_cast<double>(static_cast<std::int16_t>(in[i] | high << 8))));
  }
}

}  // namespace

std::int32_t getWaveHeaderSize() { return kHeaderSize; }

std::uint8_t* createWaveHeader(std::uint32_t dataSize, std::uint16_t channels, std::uint32_t sampleRate,
                               std::uint16_t bitsPerSample) {
  auto* header = static_cast<std::uint8_t*>(std::malloc(kHeaderSize));
  if (!header) return nullptr;
  const std::uint32_t bytesPerFrame = std::uint32_t{bitsPerSample} * channels >> 3;
  std::uint8_t* out = put(header, "RIFF");
  out = put(out, dataSize + 36);
  out = put(out, "WAVE");
  out = put(out, "fmt ");
  out = put(out, std::uint32_t{16});
  out = put(out, kPcm);
  out = put(out, channels);
  out = put(out, sampleRate);
  out = put(out, bytesPerFrame * sampleRate);
  out = put(out, static_cast<std::uint16_t>(bytesPerFrame));
  out = put(out, bitsPerSample);
  out = put(out, "data");
  put(out, dataSize);
  return header;
}

void freeWaveHeader(std::uint8_t* header) { std::free(header); }

void freeWaveData(std::uint8_t* data) { std::free(data); }

std::uint8_t* creatWaveData(const std::uint8_t* data, std::int64_t size, float amplitude) {
  if (!data) return nullptr;
  std::uint8_t* block = allocate(size, 1);
  if (block) orn::scaleCycle(data, size, amplitude, block);
  return block;
}

std::uint8_t* creatWaveDataF(const std::uint8_t* data, std::int64_t size, std::int32_t repetitions, float start,
                             float end) {
  if (!data) return nullptr;
  std::uint8_t* block = allocate(size, repetitions);
  if (block) orn::rampCycles(data, size, repetitions, start, end, block);
  return block;
}

std::uint8_t* creatWaveDataByTimes(const std::uint8_t* data, std::int64_t size, float start, float end,
                                   std::int32_t steadyTimes, std::int32_t rampTimes) {
  if (!data) return nullptr;
  const std::int64_t ramps = std::max(rampTimes, 0);
  const std::int64_t steadies = std::max(steadyTimes, 0);
  std::uint8_t* block = allocate(size, ramps + steadies);
  if (!block || size < 1) return block;
  const double step = ramps > 0 ? static_cast<double>(std::abs(start - end) / static_cast<float>(rampTimes)) : 0.0;
  std::uint8_t* out = block;
  // A stair from 0 upward, at the first cycle silent and whatever the start amplitude: this is meant.
  for (std::int64_t k = 0; k < ramps; ++k, out += evenSize(size)) {
    scaleWidened(data, size, step * static_cast<double>(k), out);
  }
  if (steadies == 0) return block;
  orn::scaleCycle(data, size, end, out);
  // Odd cycles follow one another without the byte in between that the ramp leaves; this is meant too.
  for (std::int64_t k = 1; k < steadies; ++k) std::memcpy(out + k * size, out, static_cast<std::size_t>(size));
  return block;
}
