// What a block of the tone stream costs, steady and fading, beside a copy of a block. Ratios count, in one run.

#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <memory>

#include <ORNHearingTestSDK/audio/SampleFormat.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace {

/// A manual test on the audiometer path, as the stream sees it.
struct Stream {
  Stream() {
    orn::Platform::setCurrent(machine.platform());
    session = orn::ORNManualHearingTest::init();
    session->setKV50MAC("AA:BB:CC:DD:EE:FF");
    const auto record = std::make_shared<orn::ORNDeviceVolumeIOS>();
    for (auto set :
         {&orn::ORNDeviceVolumeIOS::setS125, &orn::ORNDeviceVolumeIOS::setS1000, &orn::ORNDeviceVolumeIOS::setS8000}) {
      ((*record).*set)("-50");
    }
    session->setAb(record);
  }
  ~Stream() {
    session.reset();
    orn::Platform::clearCurrent();
  }

  orn::SimulatedPlatform machine;
  std::shared_ptr<orn::ORNManualHearingTest> session;
};

void copyOfABlock(benchmark::State& state) {
  std::array<std::uint8_t, orn::kBlockBytes> from{}, to{};
  for (auto _ : state) {
    benchmark::DoNotOptimize(from.data());
    std::memcpy(to.data(), from.data(), to.size());
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(copyOfABlock);

void steadyBlock(benchmark::State& state) {
  Stream stream;
  stream.session->playAtHz(std::to_string(state.range(0)) + "hz", "60db");
  for (int fade = 0; fade < 20; ++fade) stream.session->playerGetData();
  for (auto _ : state) benchmark::DoNotOptimize(stream.session->playerGetData().data());
}
BENCHMARK(steadyBlock)->Arg(125)->Arg(1000)->Arg(8000);

void fadeBlock(benchmark::State& state) {
  Stream stream;
  stream.session->playAtHz(std::to_string(state.range(0)) + "hz", "60db");
  const auto item = stream.session->currentItem();
  for (auto _ : state) {
    item->setAdjustzhenfu(0);
    benchmark::DoNotOptimize(stream.session->playerGetData().data());
  }
}
BENCHMARK(fadeBlock)->Arg(125)->Arg(1000)->Arg(8000);

}  // namespace
