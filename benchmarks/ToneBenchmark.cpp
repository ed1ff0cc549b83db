// What a block of the tone stream costs, 3840 samples of 16 bits, steady and fading: beside the copy of a block, and
// beside oscillators that compute each sample.

#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveScaling.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

#include "benchmarks/AudiometerStream.h"
#include "benchmarks/Comparison.h"
#include "benchmarks/NaiveOscillator.h"

#if ORN_HAS_STK
#include <stk/SineWave.h>
#endif

namespace {

using namespace orn;
using namespace orn::bench;

using Block = std::array<std::int16_t, kBlockBytes / 2>;

Block from{}, to{};
std::uint8_t* const buffer = reinterpret_cast<std::uint8_t*>(to.data());

Work copy() {
  return often("copy of a block", [] {
    keep(from.data());
    std::memcpy(to.data(), from.data(), kBlockBytes);
    keep(to.data());
  });
}

void compareWith(const Work& reference, std::initializer_list<int> frequencies) {
  for (const int hz : frequencies) {
    AudiometerStream stream(hz);
    const std::string tone = std::to_string(hz) + " Hz";
    compare(often("steady block, " + tone, [&] { stream.steadyBlock(buffer), keep(buffer); }), reference);
    compare(often("fading block, " + tone, [&] { stream.fadingBlock(buffer), keep(buffer); }), reference);
  }
}

void compareWithOscillators() {
  NaiveOscillator naive(1000);
  compareWith(often("block by sinf of each sample", [&] { naive.fill(to), keep(to.data()); }), {1000});
#if ORN_HAS_STK
  stk::Stk::setSampleRate(48000);
  stk::SineWave sine;
  sine.setFrequency(1000);
  compareWith(often("block by STK's SineWave",
                    [&] {
                      for (std::int16_t& sample : to) sample = static_cast<std::int16_t>(12000 * sine.tick());
                      keep(to.data());
                    }),
              {1000});
#else
  printMissing("The library STK");
#endif
}

void compareKernels() {
  if (!isAvailable(WaveKernel::Avx2)) return;
  const auto table = sineTable(1000);
  const auto ramp = [&](WaveKernel kernel) {
    rampCycles(table->data, table->size, kBlockBytes / table->size, 0.1F, 0.2F, buffer, kernel);
    keep(buffer);
  };
  compare(often("ramp of a block, AVX2", [&] { ramp(WaveKernel::Avx2); }),
          often("ramp of a block, as compiled for any", [&] { ramp(WaveKernel::Baseline); }));
}

}  // namespace

int main() {
  compareWith(copy(), {125, 1000, 8000});
  compareWithOscillators();
  compareKernels();
}
