#include <functional>

#include <ORNHearingTestSDK/contracts/AudioCheck.h>

#include "SoundFixture.h"

namespace orn {
namespace {

using namespace std::chrono_literals;

/// What an output says of whether its sound is whole.
class WholeSound : public SoundTest {
 protected:
  WholeSound() {
    server_.addSink("earphones", "Earphones", {"device.form_factor=headphone"});
    server_.setDefault("earphones");
    usePlatform();
  }

  std::unique_ptr<AudioPlayer> newTone() {
    auto tone = output_->playerWithContentsOfFile(*others_.fileManager->resourceBundle("wav.bundle") + "/40+3.wav");
    tone->setNumberOfLoops(-1);
    return tone;
  }

  bool comesTo(const std::error_code& status) {
    return loop_->runUntil([&] { return output_->status() == status; }, 5s);
  }

  /// Something sounds, is disturbed, and comes to be whole again.
  void expectToldOf(std::errc expected, const std::function<void()>& begin, const std::function<void()>& end) {
    loop_->runFor(500ms);
    EXPECT_FALSE(output_->status());
    const std::uint64_t before = output_->lapses();
    begin();
    EXPECT_TRUE(comesTo(std::make_error_code(expected))) << output_->status().message();
    EXPECT_GT(output_->lapses(), before) << "what is missing right now counts";
    end();
    EXPECT_TRUE(comesTo({})) << output_->status().message();
    loop_->runFor(300ms);
    const std::uint64_t after = output_->lapses();
    loop_->runFor(600ms);
    EXPECT_EQ(output_->lapses(), after) << "it is whole again";
    EXPECT_FALSE(output_->status());
  }
};

TEST_P(WholeSound, AServerThatStandsStillInMidToneIsToldOfAndHoldsNobodyUp) {
  const auto tone = newTone();
  contract::QueueUnderTest stream(*output_,
                                  [](AudioQueue& self, AudioQueueBuffer& buffer) { self.enqueueBuffer(buffer); });
  stream.enqueueBlocks(Samples(3 * contract::QueueUnderTest::kBlock, 257));
  for (const bool isStream : {true, false}) {
    EXPECT_FALSE(isStream ? stream->start() : tone->play());
    expectToldOf(
        std::errc::timed_out, [&] { server_.standStill(); },
        [&] {
          const auto asked = loop_->now();
          for (int i = 0; i < 10; ++i) EXPECT_EQ(newTone()->play(), std::errc::timed_out);
          EXPECT_LT((loop_->now() - asked) / kHaste, 5s);
          EXPECT_EQ(output_->status(), std::errc::timed_out);
          server_.goOn();
        });
    isStream ? (void)stream->pause() : tone->stop();
  }
  server_.standStill();
  EXPECT_EQ(newTone()->play(), std::errc::timed_out);
  EXPECT_EQ(output_->status(), std::errc::timed_out) << "nothing else is there to show it";
  server_.goOn();
  EXPECT_TRUE(comesTo({}));
}

ORN_ON_BOTH_SERVERS(WholeSound);

// The other server asks nobody to make way, and wakes a device that is suspended.
using SoundHeldBack = WholeSound;

TEST_P(SoundHeldBack, IsToldOf) {
  const auto tone = newTone();
  EXPECT_FALSE(tone->play());
  server_.control("load-module module-role-cork");
  std::unique_ptr<Program> call;
  expectToldOf(
      std::errc::device_or_resource_busy, [&] { call = server_.startCall(); }, [&] { call.reset(); });
  expectToldOf(
      std::errc::device_or_resource_busy, [&] { server_.control("suspend-sink earphones 1"); },
      [&] { server_.control("suspend-sink earphones 0"); });
}

INSTANTIATE_TEST_SUITE_P(On, SoundHeldBack, testing::Values(ServerKind::PulseAudio), nameOf);

}  // namespace
}  // namespace orn
