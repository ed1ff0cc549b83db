#include <thread>

#include "SoundFixture.h"

#include <ORNHearingTestSDK/audio/AudioRoute.h>
#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>

namespace orn {
namespace {

using namespace std::chrono_literals;

constexpr std::int32_t kNewDevice = 1, kDeviceGone = 2;

class Route : public SoundTest {
 protected:
  std::shared_ptr<simulation::TestRun> newTest(OutputPath path) {
    tones_ = 0;
    simulation::TestWatch watch;
    watch.tonePlays = [this](const std::string&, const std::string&, bool) { ++tones_; };
    return SoundTest::newTest(path, watch);
  }

  /// Starts an ear and waits until so many tones have come and the audiometer sounds.
  bool isHeard(simulation::TestRun& run, int tones) {
    const Recording recording(server_, "audiometer");
    const int before = tones_;
    run.startEar(false);
    return loop_->runUntil([&] { return tones_ >= before + tones && !recording.isSilent(); });
  }

  /// The next tone can't sound, and the test says so instead of taking it for one that nobody heard.
  void expectEnd(const simulation::TestRun& run) {
    EXPECT_TRUE(loop_->runUntil([&] { return run.isOver(); })) << "the session goes on";
    EXPECT_EQ(run.outcome().failure, "the sound output is gone or does not play");
    EXPECT_TRUE(run.outcome().left.empty() && run.outcome().right.empty());
  }

  int tones_ = 0;
};

TEST_P(Route, IsTheDefaultOutputAsItsPropertiesSay) {
  const struct {
    std::string name, description;
    std::vector<std::string> properties;
    std::string text;
    bool hasHeadset;
    std::optional<std::string> audiometer;
  } table[] = {
      {"speaker", "Speakers", {}, "Speaker", false, {}},
      {"phones", "Phones", {"device.form_factor=headphone"}, "Headphone", true, {}},
      {"usb", "USB headset", {"device.form_factor=headset"}, "Headset", true, {}},
      {"kit", "KV50 car kit", {"device.form_factor=hands-free", "device.string=hw:0"}, "Speaker", false, {}},
      {"kv60", "My KV60", {"device.string=11:22:33:44:55:66"}, "SpeakerBT", false, "11:22:33:44:55:66"},
  };
  usePlatform();
  loop_->runFor(50ms);
  for (const auto& one : table) {
    server_.addSink(one.name, one.description, one.properties);
    server_.setDefault(one.name);
    ASSERT_TRUE(loop_->runUntil([&] {
      const auto outputs = session_->currentRoute().outputs;
      return !outputs.empty() && outputs[0].portName == one.description;
    })) << one.name;
    EXPECT_EQ(session_->routeText(), one.text);
    EXPECT_EQ(AudioRoute::hasHeadset(), one.hasHeadset) << one.name;
    EXPECT_EQ(AudioRoute::getKV50Mac(), one.audiometer) << one.name;
  }
  EXPECT_TRUE(hasNotice(kNewDevice));
  server_.setDefault("phones");
  EXPECT_TRUE(loop_->runUntil([&] {
    // Here only a new connection may learn of it, which is made when somebody looks.
    if (GetParam() == ServerKind::PipeWire) (void)session_->routeText();
    return reasons_.back() == 0;
  })) << "chosen by the user";
}

TEST_P(Route, ALossInMidTestIsToldOfAndNoToneGoesElsewhere) {
  for (const OutputPath path : {OutputPath::Audiometer, OutputPath::Earphones}) {
    for (const bool isServer : {false, true}) {
      const std::string audiometer = server_.addAudiometer(), speaker = server_.addSpeaker();
      server_.setDefault("audiometer");
      usePlatform();
      const auto run = newTest(path);
      ASSERT_TRUE(isHeard(*run, 2));
      reasons_.clear();
      {
        Recording elsewhere(server_, "speaker");
        isServer ? server_.kill() : server_.remove(audiometer);
        ASSERT_TRUE(loop_->runUntil([&] { return hasNotice(kDeviceGone); }));
        expectEnd(*run);
        loop_->runFor(300ms);
        EXPECT_TRUE(elsewhere.isSilent()) << "the loudspeaker has played";
        EXPECT_TRUE(isServer || !elsewhere.take().empty());
      }
      if (isServer) {
        EXPECT_EQ(session_->routeText(), std::nullopt);
        EXPECT_EQ(session_->setOutputVolume(1), std::errc::no_such_device);
        EXPECT_EQ(output_->useCurrentDevice(), std::errc::no_such_device);
        server_.start();
      }
      // With the device back, a test that is started anew is heard.
      const std::string again = server_.addAudiometer();
      server_.setDefault("audiometer");
      ASSERT_TRUE(loop_->runUntil([&] { return hasNotice(kNewDevice) && session_->routeText() == "HeadsetBT"; }));
      EXPECT_TRUE(isHeard(*newTest(path), 0));
      Platform::clearCurrent();
      server_.remove(again);
      if (!isServer) server_.remove(speaker);
    }
  }
}

TEST_P(Route, TheVolumeIsPutBackToTheVeryValue) {
  // One test after the other, and before each the user sets another volume.
  const std::tuple<std::string, std::string, bool> table[] = {
      {"21% 64%", "1", false}, {"0% 0%", "0", true}, {"140% 60%", "0", true}};
  std::string audiometer = server_.addAudiometer();
  server_.addSpeaker();
  usePlatform();
  for (const auto& [volume, muted, isLost] : table) {
    server_.setDefault("audiometer");
    ASSERT_TRUE(loop_->runUntil([&] { return session_->routeText() == "HeadsetBT"; }));
    server_.control("set-sink-volume audiometer " + volume);
    server_.control("set-sink-mute audiometer " + muted);
    const std::string before = server_.volumes("audiometer"), elsewhere = server_.volumes("speaker");
    ORNSystemVolumeManager::saveSystemVolume();
    ORNSystemVolumeManager::setSystemVolumeToMax();
    EXPECT_EQ(ORNSystemVolumeManager::getSystemVolume(), 1);
    EXPECT_THAT(server_.volumes("audiometer"), testing::AllOf(testing::HasSubstr("100%"), testing::HasSubstr("no"),
                                                              testing::HasSubstr("balance 0.00")));
    if (isLost) {
      server_.remove(audiometer);
      ASSERT_TRUE(loop_->runUntil([&] { return session_->routeText() == "Speaker"; }));
    }
    ORNSystemVolumeManager::reStoreSystemVolume();
    EXPECT_FALSE(session_->restoreOutputVolume(0)) << "a screen does so twice, and nothing is left to put back";
    EXPECT_EQ(server_.volumes("speaker"), elsewhere);
    if (isLost) audiometer = server_.addAudiometer();
    EXPECT_TRUE(loop_->runUntil([&] { return server_.volumes("audiometer") == before; }, 5s))
        << before << (isLost ? " lost: " : ": ") << server_.volumes("audiometer");
  }
}

/// On a server of several programs, which tell of a new output before they have agreed that it is the default one.
using NewOutput = SoundTest;

TEST_P(NewOutput, IsWaitedForAMomentByTheFirstSound) {
  server_.addSink("earphones", "Earphones", {"device.form_factor=headphone"});
  server_.setDefault("earphones");
  const auto expectFirstSound = [this](std::error_code expected) {
    usePlatform();
    const auto tone =
        output_->playerWithContentsOfFile(*others_.fileManager->resourceBundle("wav.bundle") + "/40+3.wav");
    const auto asked = loop_->now();
    EXPECT_EQ(tone->play(), expected);
    EXPECT_LT((loop_->now() - asked) / kHaste, 3s);
    Platform::clearCurrent();
  };
  server_.changeMetadata("-d 0 default.audio.sink");
  expectFirstSound(std::make_error_code(std::errc::no_such_device));
  {
    const std::jthread agreement([&] {
      std::this_thread::sleep_for(200ms);
      server_.changeMetadata(R"(0 default.audio.sink '{"name":"earphones"}' Spa:String:JSON)");
    });
    expectFirstSound({});
  }
  server_.standStill();
  expectFirstSound(std::make_error_code(std::errc::timed_out));
  server_.goOn();
}

INSTANTIATE_TEST_SUITE_P(On, NewOutput, testing::Values(ServerKind::PipeWire), nameOf);

ORN_ON_BOTH_SERVERS(Route);

}  // namespace
}  // namespace orn
