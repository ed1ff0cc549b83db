#include <memory>
#include <utility>

#include <ORNHearingTestSDK/contracts/AudioCheck.h>
#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>
#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>
#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>
#include <ORNHearingTestSDK/contracts/AudioSessionContract.h>

#include "SoundFixture.h"
#include "contracts/ContractExpectations.h"
#include "contracts/LinuxBackend.h"

namespace orn::contract {
namespace {

/// A real sound server as a machine whose devices come and go, with the sound of the Linux backend on it.
class Machine {
 public:
  explicit Machine(TestSoundServer& server) : server_(server) {
    bringDeviceBack();
    sound = linuxSound(loop_.loop, "test", server_.address());
    session_ = sound.session;
  }
  ~Machine() {
    music_.reset();
    call_.reset();
    while (!modules_.empty()) unplug();
  }
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  void runFor(std::chrono::nanoseconds span) const { loop_.runFor(span); }
  std::vector<std::int16_t> heard() { return ears_ ? ears_->take() : std::vector<std::int16_t>(); }

  void bringDeviceBack() {
    add("earphones", server_.addSink("earphones", "Earphones", {"device.form_factor=headphone"}));
    ears_ = std::make_unique<Recording>(server_, "earphones");
  }
  void plug() { add("audiometer", server_.addAudiometer()); }

  /// Takes the newest device away.
  void unplug() {
    ears_.reset();
    server_.remove(modules_.back());
    modules_.pop_back();
    waitForRoute(!modules_.empty());
  }

  /// A call, for which the server silences everything else; there has to be something to silence.
  void interrupt(std::int32_t type) {
    if (type == kAudioSessionInterruptionTypeEnded) return call_.reset();
    server_.control("load-module module-role-cork");
    music_ = sound.output->playerWithData(waveFile(constant(4800, 1000)));
    music_->setNumberOfLoops(-1);
    EXPECT_FALSE(music_->play());
    call_ = server_.startCall();
  }

  LinuxSound sound;  // what is under test is moved out of it

 private:
  void add(const std::string& sink, const std::string& module) {
    modules_.push_back(module);
    server_.setDefault(sink);
    waitForRoute(true);
  }

  void waitForRoute(bool isThere) const {
    const auto isKnown = [&] {
      const auto session = session_.lock();
      return !session || session->currentRoute().outputs.empty() != isThere;
    };
    // For a while, since a server that is made of several programs may change its mind on the way.
    for (int i = 0, known = 0; i < 500 && known < 15; ++i) {
      runFor(10ms);
      known = isKnown() ? known + 1 : 0;
    }
  }

  TestSoundServer& server_;
  RunLoopUnderTest loop_ = linuxLoop();
  std::weak_ptr<AudioSession> session_;
  std::vector<std::string> modules_;
  std::unique_ptr<Recording> ears_;
  std::unique_ptr<AudioPlayer> music_;
  std::unique_ptr<Program> call_;
};

class SoundContract : public testing::TestWithParam<ServerKind> {
 protected:
  AudioUnderTest audio() {
    const auto machine = std::make_shared<Machine>(server_);
    return {.output = std::move(machine->sound.output),
            .runFor = [machine](auto span) { machine->runFor(span); },
            .heard = [machine] { return machine->heard(); },
            // This server mixes in whole periods, and TestSoundServer makes them long.
            .framesHeldBack = GetParam() == ServerKind::PipeWire ? 4096U : 0U,
            .takeDeviceAway = [machine] { machine->unplug(); },
            .bringDeviceBack = [machine] { machine->bringDeviceBack(); }};
  }

  AudioSessionUnderTest session() {
    const auto machine = std::make_shared<Machine>(server_);
    AudioSessionUnderTest session{.session = std::move(machine->sound.session),
                                  .runFor = [machine](auto span) { machine->runFor(span); },
                                  .plug = [machine] { machine->plug(); },
                                  .unplug = [machine] { machine->unplug(); },
                                  .unplugAll = [machine] { machine->unplug(); },
                                  .interrupt = {}};
    // The other server has no module that asks streams to make way.
    if (GetParam() == ServerKind::PulseAudio) {
      session.interrupt = [machine](std::int32_t type) { machine->interrupt(type); };
    }
    return session;
  }

  TestSoundServer server_{GetParam()};
};

TEST_P(SoundContract, OfTheQueue) {
  expectKept(checkAudioQueue([this] { return audio(); }));
}

TEST_P(SoundContract, OfThePlayer) {
  std::vector<std::string> notChecked;
  if (GetParam() == ServerKind::PipeWire) notChecked.emplace_back("after its end");
  expectKept(checkAudioPlayer([this] { return audio(); }), notChecked);
}

TEST_P(SoundContract, OfTheOutput) {
  expectKept(checkAudioOutput([this] { return audio(); }));
}

TEST_P(SoundContract, OfTheSession) {
  std::vector<std::string> notChecked;
  if (GetParam() == ServerKind::PipeWire) notChecked.emplace_back("an interruption");
  expectKept(checkAudioSession([this] { return session(); }), notChecked);
}

ORN_ON_BOTH_SERVERS(SoundContract);

}  // namespace
}  // namespace orn::contract
