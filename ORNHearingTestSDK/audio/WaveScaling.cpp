#include <ORNHearingTestSDK/audio/WaveScaling.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#if defined(__x86_64__) || defined(__i386__)
#define ORN_HAS_AVX2_KERNEL 1
#endif

// Compiled anew into each kernel, with the instructions of that kernel.
#define ORN_KERNEL_INLINE [[gnu::always_inline]] inline

namespace orn {
namespace {

constexpr float kFastGain = 65000.0F;         // its product with any sample stays inside 32 bits
constexpr std::int32_t kCountable = 1 << 24;  // up to here a float holds every integer
constexpr std::int64_t kChunkSamples = 384;
constexpr std::int64_t kPatternSamples = 48;

struct Ramp {
  const std::uint8_t* in;
  std::int64_t size;
  std::int32_t repetitions;
  float start;
  float step;
  std::uint8_t* out;

  static Ramp of(const std::uint8_t* in, std::int64_t size, std::int32_t repetitions, float start, float end,
                 std::uint8_t* out) {
    return {in, size, repetitions, start, (end - start) / static_cast<float>(repetitions), out};
  }
};

// Copied as a whole where the processor has this byte order: that is what the compiler turns into vectors.
ORN_KERNEL_INLINE std::int16_t readSample(const std::uint8_t* in) {
  if constexpr (std::endian::native == std::endian::little) {
    std::int16_t sample;
    std::memcpy(&sample, in, sizeof sample);
    return sample;
  }
  return static_cast<std::int16_t>(in[0] | in[1] << 8);
}

ORN_KERNEL_INLINE void writeSample(std::uint8_t* out, std::int32_t product) {
  const auto sample = static_cast<std::uint16_t>(product);
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(out, &sample, sizeof sample);
  } else {
    out[0] = static_cast<std::uint8_t>(sample);
    out[1] = static_cast<std::uint8_t>(sample >> 8);
  }
}

ORN_KERNEL_INLINE std::int32_t truncated(float product) { return static_cast<std::int32_t>(product); }

std::int32_t truncatedSafely(float product) {
  constexpr float limit = 2147483648.0F;
  return product >= -limit && product < limit ? static_cast<std::int32_t>(product) : 0;
}

float sampleAt(const std::uint8_t* in, std::int64_t size, std::int64_t i) {
  return static_cast<float>(i + 1 < size ? readSample(in + i) : in[i]);
}

bool isFast(float gain) { return std::abs(gain) <= kFastGain; }

// The ramp as it is meant, for any gain and any length; the kernels below reorder nothing but the samples.
void rampPlainly(const Ramp& ramp, float mostGain = std::numeric_limits<float>::infinity()) {
  std::uint8_t* out = ramp.out;
  for (std::int32_t k = 0; k < ramp.repetitions; ++k) {
    const float base = ramp.step * static_cast<float>(k) + ramp.start;
    for (std::int64_t i = 0; i < ramp.size; i += 2, out += 2) {
      const float gain = base + (ramp.step * static_cast<float>(i)) / static_cast<float>(ramp.size);
      writeSample(out, truncatedSafely(std::min(gain, mostGain) * sampleAt(ramp.in, ramp.size, i)));
    }
  }
}

// What does not change from one repetition to the next: the samples, and each one's share of the step.
ORN_KERNEL_INLINE void prepare(const Ramp& ramp, std::int64_t first, std::int64_t count, float* samples,
                               float* shares) {
  const std::int64_t whole = std::min(count, ramp.size / 2 - first);
  for (std::int64_t j = 0; j < whole; ++j) samples[j] = static_cast<float>(readSample(ramp.in + 2 * (first + j)));
  if (whole < count) samples[whole] = static_cast<float>(ramp.in[ramp.size - 1]);
  for (std::int64_t j = 0; j < count; ++j) {
    const auto i = static_cast<std::int32_t>(2 * (first + j));
    shares[j] = (ramp.step * static_cast<float>(i)) / static_cast<float>(ramp.size);
  }
}

ORN_KERNEL_INLINE void rampLongCycle(const Ramp& ramp, std::int64_t cycle) {
  alignas(32) float samples[kChunkSamples];
  alignas(32) float shares[kChunkSamples];
  for (std::int64_t first = 0; first < cycle; first += kChunkSamples) {
    const std::int64_t count = std::min(kChunkSamples, cycle - first);
    prepare(ramp, first, count, samples, shares);
    for (std::int32_t k = 0; k < ramp.repetitions; ++k) {
      const float base = ramp.step * static_cast<float>(k) + ramp.start;
      std::uint8_t* out = ramp.out + 2 * (k * cycle + first);
      for (std::int64_t j = 0; j < count; ++j) writeSample(out + 2 * j, truncated((base + shares[j]) * samples[j]));
    }
  }
}

// Several short cycles at a time, so that the inner loop stays long.
ORN_KERNEL_INLINE void rampShortCycle(const Ramp& ramp, std::int64_t cycle) {
  alignas(32) float samples[2 * kPatternSamples];
  alignas(32) float shares[2 * kPatternSamples];
  alignas(32) float offsets[2 * kPatternSamples];
  const std::int64_t cycles = std::min<std::int64_t>((kPatternSamples + cycle - 1) / cycle, ramp.repetitions);
  prepare(ramp, 0, cycle, samples, shares);
  std::fill_n(offsets, cycle, 0.0F);
  for (std::int64_t c = 1; c < cycles; ++c) {
    std::copy_n(samples, cycle, samples + c * cycle);
    std::copy_n(shares, cycle, shares + c * cycle);
    std::fill_n(offsets + c * cycle, cycle, static_cast<float>(c));
  }
  std::uint8_t* out = ramp.out;
  for (std::int64_t k = 0; k < ramp.repetitions; k += cycles) {
    const std::int64_t count = std::min(cycles, ramp.repetitions - k) * cycle;
    const auto firstRepetition = static_cast<float>(k);
    for (std::int64_t j = 0; j < count; ++j) {
      const float base = ramp.step * (firstRepetition + offsets[j]) + ramp.start;
      writeSample(out + 2 * j, truncated((base + shares[j]) * samples[j]));
    }
    out += 2 * count;
  }
}

ORN_KERNEL_INLINE void rampFast(const Ramp& ramp) {
  const std::int64_t cycle = (ramp.size + 1) / 2;
  return cycle < kPatternSamples ? rampShortCycle(ramp, cycle) : rampLongCycle(ramp, cycle);
}

void rampBaseline(const Ramp& ramp) { rampFast(ramp); }

#if ORN_HAS_AVX2_KERNEL
[[gnu::target("avx2")]] void rampAvx2(const Ramp& ramp) { rampFast(ramp); }
#endif

}  // namespace

bool isAvailable(WaveKernel kernel) {
#if ORN_HAS_AVX2_KERNEL
  return kernel == WaveKernel::Baseline || __builtin_cpu_supports("avx2");
#else
  return kernel == WaveKernel::Baseline;
#endif
}

void scaleCycle(const std::uint8_t* in, std::int64_t size, float amplitude, std::uint8_t* out) {
  const std::uint8_t* __restrict from = in;
  std::uint8_t* __restrict to = out;
  std::int64_t i = 0;
  if (isFast(amplitude)) {
    for (; i + 1 < size; i += 2) writeSample(to + i, truncated(static_cast<float>(readSample(from + i)) * amplitude));
  }
  for (; i < size; i += 2) writeSample(to + i, truncatedSafely(sampleAt(from, size, i) * amplitude));
}

void rampCycles(const std::uint8_t* in, std::int64_t size, std::int32_t repetitions, float start, float end,
                std::uint8_t* out, [[maybe_unused]] WaveKernel kernel) {
  if (size < 1 || repetitions < 1) return;
  const Ramp ramp = Ramp::of(in, size, repetitions, start, end, out);
  if (!isFast(start) || !isFast(end) || size > kCountable || repetitions > kCountable) return rampPlainly(ramp);
#if ORN_HAS_AVX2_KERNEL
  if (kernel == WaveKernel::Avx2 && isAvailable(kernel)) return rampAvx2(ramp);
#endif
  rampBaseline(ramp);
}

void rampCycles(const std::uint8_t* in, std::int64_t size, std::int32_t repetitions, float start, float end,
                std::uint8_t* out) {
  // Gives way by itself where the processor lacks it.
  rampCycles(in, size, repetitions, start, end, out, WaveKernel::Avx2);
}

void rampWithinFullScale(const std::uint8_t* in, std::int64_t size, std::int32_t repetitions, float start, float end,
                         std::uint8_t* out) {
  // Seldom: a block or two of a tone that is as loud as a device gets.
  if (size < 1 || repetitions < 1) return;
  if (!(std::max(start, end) > 1.0F)) return rampCycles(in, size, repetitions, start, end, out);
  rampPlainly(Ramp::of(in, size, repetitions, start, end, out), 1.0F);
}

}  // namespace orn
