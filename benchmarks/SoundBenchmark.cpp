// What the tone stream costs through a real sound server beside the server's own player of the same samples, whether it
// has a gap while all processors are busy, and how soon a change of tone is heard and a lost device is told of.

#include <atomic>
#include <chrono>
#include <cmath>
#include <fstream>
#include <future>
#include <thread>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>

#include "benchmarks/ChildProcess.h"
#include "benchmarks/Comparison.h"
#include "simulation/listener/OutputMonitor.h"
#include "support/TestSoundServer.h"

namespace orn {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kStretch = 20s;
constexpr std::size_t kBlock = 3840;
const AudioStreamBasicDescription kFormat{48000, kAudioFormatLinearPCM, 12, 2, 1, 2, 1, 16, 0};

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

std::string fileOfTone(const TestSoundServer& server) {
  std::string file = server.folder() + "/samples";
  std::ofstream stream(file, std::ios::binary);
  std::vector<std::int16_t> block(kBlock);
  steadyTone(block.data());
  for (int i = 0; i < kStretch / 80ms; ++i) stream.write(reinterpret_cast<const char*>(block.data()), 2 * kBlock);
  return file;
}

/// Both at the same time, so that the server gives both the same turns.
void compareWithServersPlayer() {
  TestSoundServer server(ServerKind::PulseAudio);
  server.addAudiometer();
  const LinuxSound sound = linuxSound(std::make_shared<LinuxRunLoop>(), "benchmark", server.address());
  const std::vector<std::string> command{"pacat",
                                         "--playback",
                                         "--raw",
                                         "--rate=48000",
                                         "--format=s16le",
                                         "--channels=1",
                                         "--server=" + server.address(),
                                         fileOfTone(server)};
  std::future<std::optional<double>> theirs;
  const auto ours = [&] {
    theirs = std::async(std::launch::async, [&] { return bench::processorSecondsOf(command); });
    return bench::processorSeconds([&] {
      const Stream stream(*sound.output, steadyTone);
      std::this_thread::sleep_for(kStretch);
    });
  };
  bench::compare({"20 s of the stream on a sound server", ours},
                 {"the same by pacat", [&] { return theirs.get().value_or(NAN); }}, 3);
}

/// Counts what is zero in the output while every processor has something else to do.
void countGaps() {
  TestSoundServer server(ServerKind::PulseAudio);
  server.addAudiometer();
  const LinuxSound sound = linuxSound(std::make_shared<LinuxRunLoop>(), "benchmark", server.address());
  std::atomic<bool> isOver = false;
  std::vector<std::jthread> load;
  for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i) {
    load.emplace_back([&isOver] {
      while (!isOver) bench::keep(&isOver);
    });
  }
  std::atomic<std::int64_t> gaps = 0, frames = 0;
  {
    const Stream stream(*sound.output, steadyTone);
    std::this_thread::sleep_for(500ms);
    const simulation::OutputMonitor monitor(server.address(), "audiometer.monitor", [&](auto samples) {
      for (std::size_t i = 0; i < samples.size(); i += 2) gaps += samples[i] == 0 ? 1 : 0;
      frames += static_cast<std::int64_t>(samples.size() / 2);
    });
    std::this_thread::sleep_for(kStretch);
  }
  isOver = true;
  bench::printLine("silent frames, all processors busy", std::to_string(gaps), "frames played", std::to_string(frames),
                   static_cast<double>(gaps) / static_cast<double>(frames));
}

void timeChangesOfTone() {
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
  const auto untilHeard = [&] {
    while (heard != sign) std::this_thread::sleep_for(1ms);
    std::this_thread::sleep_for(133ms);  // at another place in the block each time
    const auto changed = Clock::now();
    sign = -sign;
    while (heard != sign) std::this_thread::sleep_for(1ms);
    return std::chrono::duration<double>(Clock::duration(heardAt) - changed.time_since_epoch()).count();
  };
  bench::compare({"change of tone until it is heard", untilHeard}, {"three blocks", [] { return 0.24; }}, 31);
}

/// A device is removed by a process of its own, whose start counts on both sides.
void timeUnplugging() {
  TestSoundServer server(ServerKind::PulseAudio);
  const auto loop = std::make_shared<LinuxRunLoop>();
  const LinuxSound sound = linuxSound(loop, "benchmark", server.address());
  const auto observer = std::make_shared<AudioSessionObserver>();
  observer->routeChange = [&](std::int32_t) { loop->stop(); };
  sound.session->addObserver(observer);
  const auto untilTold = [&] {
    const std::string module = server.addAudiometer();
    loop->run();  // until it is told of
    return bench::wallSeconds([&] {
      server.remove(module);
      loop->run();
    });
  };
  bench::compare({"unplugging until it is told", untilTold},
                 {"a pactl that asks the server", [&] { return bench::wallSeconds([&] { server.control("info"); }); }});
}

}  // namespace
}  // namespace orn

int main() {
  orn::compareWithServersPlayer();
  orn::countGaps();
  orn::timeChangesOfTone();
  orn::timeUnplugging();
}
