// What a minute of the tone stream costs through a real sound server beside the server's own player of the same
// samples, whether it has a gap while all processors are busy, and how soon a change of tone is heard and a lost device
// is told of.

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <fstream>
#include <thread>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>

#include "simulation/OutputMonitor.h"
#include "sound/TestSoundServer.h"

namespace orn {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kStretch = 60s;
constexpr std::size_t kBlock = 3840;
const AudioStreamBasicDescription kFormat{48000, kAudioFormatLinearPCM, 12, 2, 1, 2, 1, 16, 0};

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double processorTime(int who) {
  rusage usage{};
  getrusage(who, &usage);
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// A queue that is fed by a function of the block's number.
class Stream {
 public:
  Stream(AudioOutput& output, std::function<void(std::int16_t* block)> fill) : fill_(std::move(fill)) {
    queue_ = output.newOutputQueue(kFormat, [this](AudioQueue&, AudioQueueBuffer& buffer) { enqueue(buffer); });
    queue_->start();
    for (int i = 0; i < 3; ++i) enqueue(*queue_->allocateBuffer(2 * kBlock));
  }

 private:
  void enqueue(AudioQueueBuffer& buffer) {
    fill_(reinterpret_cast<std::int16_t*>(buffer.mAudioData.data()));
    buffer.mAudioDataByteSize = 2 * kBlock;
    queue_->enqueueBuffer(buffer);
  }

  std::function<void(std::int16_t*)> fill_;
  std::unique_ptr<AudioQueue> queue_;
};

/// Never zero, so that a zero in the output is a gap.
void steadyTone(std::int16_t* block) {
  for (std::size_t i = 0; i < kBlock; ++i) block[i] = static_cast<std::int16_t>(i % 48 < 24 ? 12000 : -12000);
}

double timeOfOurStream(const TestSoundServer& server) {
  const LinuxSound sound = linuxSound(std::make_shared<LinuxRunLoop>(), "benchmark", server.address());
  const double before = processorTime(RUSAGE_SELF);
  {
    const Stream stream(*sound.output, steadyTone);
    std::this_thread::sleep_for(kStretch);
  }
  return processorTime(RUSAGE_SELF) - before;
}

double timeOfServersPlayer(const TestSoundServer& server) {
  const std::string file = server.folder() + "/samples";
  {
    std::ofstream stream(file, std::ios::binary);
    std::vector<std::int16_t> block(kBlock);
    steadyTone(block.data());
    for (int i = 0; i < kStretch / 80ms; ++i) stream.write(reinterpret_cast<const char*>(block.data()), 2 * kBlock);
  }
  const double before = processorTime(RUSAGE_CHILDREN);
  const pid_t child = fork();
  if (child == 0) {
    execlp("pacat", "pacat", "--playback", "--raw", "--rate=48000", "--format=s16le", "--channels=1",
           ("--server=" + server.address()).c_str(), file.c_str(), nullptr);
    _exit(127);
  }
  waitpid(child, nullptr, 0);
  return processorTime(RUSAGE_CHILDREN) - before;
}

void BM_MinuteOfStreamAgainstServersPlayer(benchmark::State& state) {
  TestSoundServer server(ServerKind::PulseAudio);
  server.addAudiometer();
  double ours = 0, theirs = 0;
  for (auto _ : state) {
    ours += timeOfOurStream(server);
    theirs += timeOfServersPlayer(server);
  }
  state.counters["ours_s"] = ours;
  state.counters["theirs_s"] = theirs;
  state.counters["ratio"] = ours / theirs;
}
BENCHMARK(BM_MinuteOfStreamAgainstServersPlayer)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);

void BM_GapsInAMinuteWithAllProcessorsBusy(benchmark::State& state) {
  TestSoundServer server(ServerKind::PulseAudio);
  server.addAudiometer();
  const LinuxSound sound = linuxSound(std::make_shared<LinuxRunLoop>(), "benchmark", server.address());
  std::atomic<bool> isOver = false;
  std::vector<std::jthread> load;
  for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i) {
    load.emplace_back([&isOver] {
      while (!isOver) benchmark::ClobberMemory();
    });
  }
  std::atomic<std::int64_t> gaps = 0, frames = 0;
  for (auto _ : state) {
    const Stream stream(*sound.output, steadyTone);
    std::this_thread::sleep_for(500ms);
    const simulation::OutputMonitor monitor(server.address(), "audiometer.monitor", [&](auto samples) {
      for (std::size_t i = 0; i < samples.size(); i += 2) gaps += samples[i] == 0 ? 1 : 0;
      frames += static_cast<std::int64_t>(samples.size() / 2);
    });
    std::this_thread::sleep_for(kStretch);
  }
  isOver = true;
  state.counters["silent_frames"] = static_cast<double>(gaps);
  state.counters["frames"] = static_cast<double>(frames);
}
BENCHMARK(BM_GapsInAMinuteWithAllProcessorsBusy)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);

void BM_ChangeOfToneUntilItIsHeard(benchmark::State& state) {
  TestSoundServer server(ServerKind::PulseAudio);
  server.addAudiometer();
  const LinuxSound sound = linuxSound(std::make_shared<LinuxRunLoop>(), "benchmark", server.address());
  std::atomic<int> sign = 1, heard = 0;
  const Stream stream(*sound.output,
                      [&](std::int16_t* block) { std::fill_n(block, kBlock, std::int16_t(sign * 9000)); });
  std::atomic<Clock::rep> heardAt = 0;
  const simulation::OutputMonitor monitor(server.address(), "audiometer.monitor", [&](auto samples) {
    const std::int16_t last = samples[samples.size() - 1];
    if (last == 9000 * sign && heard != sign) {
      heard = sign.load();
      heardAt = Clock::now().time_since_epoch().count();
    }
  });
  double longest = 0;
  for (auto _ : state) {
    while (heard != sign) std::this_thread::sleep_for(1ms);
    std::this_thread::sleep_for(133ms);  // another place in the block each time
    const auto changed = Clock::now();
    sign = -sign;
    while (heard != sign) std::this_thread::sleep_for(1ms);
    const double time = std::chrono::duration<double>(Clock::duration(heardAt) - changed.time_since_epoch()).count();
    state.SetIterationTime(time);
    longest = std::max(longest, time);
  }
  state.counters["longest_s"] = longest;
}
BENCHMARK(BM_ChangeOfToneUntilItIsHeard)->Iterations(40)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_UnpluggingUntilItIsTold(benchmark::State& state) {
  TestSoundServer server(ServerKind::PulseAudio);
  const auto loop = std::make_shared<LinuxRunLoop>();
  const LinuxSound sound = linuxSound(loop, "benchmark", server.address());
  const auto observer = std::make_shared<AudioSessionObserver>();
  observer->routeChange = [&](std::int32_t) { loop->stop(); };
  sound.session->addObserver(observer);
  for (auto _ : state) {
    const std::string module = server.addAudiometer();
    loop->run();  // until it is told of
    const auto begin = Clock::now();
    server.remove(module);  // by a process of its own, whose start counts here
    loop->run();
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
  }
}
BENCHMARK(BM_UnpluggingUntilItIsTold)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orn
