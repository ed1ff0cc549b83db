#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "HastyRunLoop.h"
#include "simulation/calibration/SampleCalibration.h"
#include "simulation/listener/OutputMonitor.h"
#include "simulation/runs/TestRun.h"
#include "support/TestSoundServer.h"

namespace orn {

using Samples = std::vector<std::int16_t>;

/// What an output has played, in both channels, from now on.
class Recording {
 public:
  Recording(const TestSoundServer& server, const std::string& sink)
      : monitor_(server.address(), sink + ".monitor", [this](std::span<const std::int16_t> samples) {
          const std::lock_guard lock(mutex_);
          samples_.insert(samples_.end(), samples.begin(), samples.end());
        }) {}

  /// Interleaved left and right samples, each once.
  Samples take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(samples_, {});
  }

  bool isSilent() const {
    const std::lock_guard lock(mutex_);
    return std::all_of(samples_.begin(), samples_.end(), [](std::int16_t one) { return one == 0; });
  }

 private:
  mutable std::mutex mutex_;
  Samples samples_;
  simulation::OutputMonitor monitor_;
};

/// A machine with a real sound server of the test's own, in hasty time; all but its sound is simulated.
class SoundTest : public testing::TestWithParam<ServerKind> {
 protected:
  static constexpr int kHaste = 8;

  SoundTest() : server_(GetParam()), loop_(std::make_shared<HastyRunLoop>(kHaste)) {}
  ~SoundTest() override { Platform::clearCurrent(); }

  /// Puts the machine in force; call it after the outputs are there.
  void usePlatform() {
    LinuxSound sound = linuxSound(loop_, "test", server_.address());
    output_ = sound.output;
    session_ = sound.session;
    observer_->routeChange = [this](std::int32_t reason) { reasons_.push_back(reason); };
    session_->addObserver(observer_);
    Platform platform = others_.platform();
    platform.runLoop = loop_;
    platform.audioOutput = output_;
    platform.audioSession = session_;
    Platform::setCurrent(platform);
  }

  /// A test with the sample calibration, that one tone after another is not heard in. Its ears end at once.
  std::shared_ptr<simulation::TestRun> newTest(OutputPath path, simulation::TestWatch watch = {}) {
    const auto run = std::make_shared<simulation::TestRun>(
        simulation::TestType::Automatic, std::vector<std::string>{"1000hz", "500hz"}, std::move(watch));
    run->calibrate(path, simulation::sampleDevice(path), simulation::sampleReply(path));
    return run;
  }

  bool hasNotice(std::int32_t reason) const {
    return std::find(reasons_.begin(), reasons_.end(), reason) != reasons_.end();
  }

  TestSoundServer server_;
  std::shared_ptr<HastyRunLoop> loop_;
  SimulatedPlatform others_;
  std::shared_ptr<AudioOutput> output_;
  std::shared_ptr<AudioSession> session_;
  std::shared_ptr<AudioSessionObserver> observer_ = std::make_shared<AudioSessionObserver>();
  std::vector<std::int32_t> reasons_;
};

inline std::string nameOf(const testing::TestParamInfo<ServerKind>& info) {
  return info.param == ServerKind::PulseAudio ? "PulseAudio" : "PipeWire";
}

#define ORN_ON_BOTH_SERVERS(Suite) \
  INSTANTIATE_TEST_SUITE_P(On, Suite, testing::Values(ServerKind::PulseAudio, ServerKind::PipeWire), nameOf)

}  // namespace orn
