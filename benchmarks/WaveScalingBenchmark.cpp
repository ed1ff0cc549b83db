#include <array>
#include <cstring>

#include <benchmark/benchmark.h>

#include <ORNHearingTestSDK/audio/SampleFormat.h>
#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveScaling.h>

namespace {

using Block = std::array<std::uint8_t, orn::kBlockBytes>;

// The yardstick of the others: what it takes only to move a block.
void copyBlock(benchmark::State& state) {
  Block in{}, out{};
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.data());
    std::memcpy(out.data(), in.data(), out.size());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void rampBlock(benchmark::State& state, orn::WaveKernel kernel) {
  if (!orn::isAvailable(kernel)) return state.SkipWithError("not on this processor");
  const auto table = orn::sineTable(static_cast<std::int32_t>(state.range(0)));
  Block out{};
  for (auto _ : state) {
    orn::rampCycles(table->data, table->size, orn::kBlockBytes / table->size, 0.1F, 0.2F, out.data(), kernel);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void scaleOneCycle(benchmark::State& state) {
  const auto table = orn::sineTable(static_cast<std::int32_t>(state.range(0)));
  Block out{};
  for (auto _ : state) {
    orn::scaleCycle(table->data, table->size, 0.3F, out.data());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void everyFrequency(benchmark::internal::Benchmark* benchmark) {
  for (const int hz : orn::kToneFrequencies) benchmark->Arg(hz);
}

BENCHMARK(copyBlock);
BENCHMARK_CAPTURE(rampBlock, Baseline, orn::WaveKernel::Baseline)->Apply(everyFrequency);
BENCHMARK_CAPTURE(rampBlock, Avx2, orn::WaveKernel::Avx2)->Apply(everyFrequency);
BENCHMARK(scaleOneCycle)->Apply(everyFrequency);

}  // namespace
