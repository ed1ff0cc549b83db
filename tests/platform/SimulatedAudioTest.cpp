#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/contracts/AudioCheck.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioOutput.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedRunLoop.h>

namespace orn {
namespace {

using contract::Bytes;
using contract::QueueUnderTest;
using contract::Samples;

class SimulatedAudio : public testing::Test {
 protected:
  SimulatedAudio() { output_->keepSamples(); }

  /// Lets exactly that many frames go by.
  void play(std::int64_t frames) {
    frames_ += frames;
    loop_->runFor(std::chrono::nanoseconds((frames_ * 125'000 + 5) / 6) - loop_->now());
  }

  /// What came out of a channel since the last question.
  Samples heard(std::size_t channel) {
    const Samples& kept = output_->keptSamples();
    Samples samples;
    for (std::size_t i = from_[channel]; i < kept.size(); i += 2) samples.push_back(kept[i + channel]);
    from_[channel] = kept.size();
    return samples;
  }

  /// The next frames of a sound that is the same in both channels.
  Samples heardInBoth(std::int64_t frames) {
    play(frames);
    Samples left = heard(0);
    EXPECT_EQ(left, heard(1));
    return left;
  }

  std::unique_ptr<AudioPlayer> looping(const Samples& samples) {
    auto player = output_->playerWithData(contract::waveFile(samples));
    player->setNumberOfLoops(-1);
    return player;
  }

  std::shared_ptr<SimulatedRunLoop> loop_ = std::make_shared<SimulatedRunLoop>();
  std::unique_ptr<SimulatedAudioOutput> output_ = std::make_unique<SimulatedAudioOutput>(loop_);

 private:
  std::int64_t frames_ = 0;
  std::size_t from_[2] = {0, 0};
};

TEST_F(SimulatedAudio, AQueueCallsBackFromNoOperationOfItsOwn) {
  int calls = 0;
  QueueUnderTest queue(*output_, [&](AudioQueue&, AudioQueueBuffer&) { ++calls; });
  queue->start();
  for (int round = 0; round < 2; ++round) {
    queue.enqueue(Samples(480));
    loop_->holdUp(std::chrono::milliseconds(20));  // it has ended by now
    queue->setVolume(0.5F);                        // perhaps under a lock that the callback takes
    queue->pause();
    loop_->runFor(std::chrono::milliseconds(100));
    EXPECT_EQ(calls, round) << "in a pause";
    queue->start();
    loop_->runFor(std::chrono::milliseconds(100));
    EXPECT_EQ(calls, round + 1);
  }
}

TEST_F(SimulatedAudio, SoundThatIsHeldBackIsSilentAndGoesOnFromWhereItWas) {
  const auto player = looping({1, 2, 3}), later = looping({10});
  QueueUnderTest queue(*output_);
  queue.enqueue({100, 200});
  player->play();
  EXPECT_EQ(heardInBoth(2), (Samples{1, 2}));
  output_->setHeldBack(true);
  EXPECT_EQ(output_->status(), std::errc::device_or_resource_busy);
  EXPECT_EQ(output_->lapses(), 1U);
  EXPECT_EQ(queue->start(), std::errc::device_or_resource_busy);
  EXPECT_EQ(heardInBoth(3), (Samples{0, 0, 0}));
  output_->setHeldBack(false);
  EXPECT_FALSE(output_->status());
  EXPECT_EQ(heardInBoth(2), (Samples{103, 201}));
  player->stop();
  queue->pause();
  EXPECT_EQ(output_->lapses(), 1U) << "one, whatever sounds";

  output_->setHeldBack(true);
  queue.enqueue({100});
  EXPECT_EQ(output_->lapses(), 1U) << "nothing sounds";
  EXPECT_EQ(later->play(), std::errc::device_or_resource_busy);
  EXPECT_EQ(output_->lapses(), 2U);
  EXPECT_EQ(heardInBoth(2), (Samples{0, 0}));
  output_->setDevicePresent(false);
  EXPECT_EQ(output_->status(), std::errc::no_such_device);
  output_->setDevicePresent(true);
  output_->setHeldBack(false);
  EXPECT_EQ(heardInBoth(2), (Samples{0, 0})) << "its device went";
}

TEST_F(SimulatedAudio, AGainRoundsHalvesAwayFromZero) {
  const struct {
    float pan, volume;
    std::int16_t sample, left, right;
  } table[] = {
      {0.5F, 0.5F, 5, 1, 3},         {-0.5F, 0.5F, -5, -3, -1},         {0, std::nextafter(0.5F, 0.0F), 1, 0, 0},
      {0, 0.25F, 32767, 8192, 8192}, {0, 0.5F, -32767, -16384, -16384}, {1, 1e38F, -100, 0, -32768}};
  for (const auto& [pan, volume, sample, left, right] : table) {
    const auto player = looping({sample});
    player->setVolume(volume);
    player->setPan(pan);
    player->play();
    play(1);
    EXPECT_EQ(heard(0), Samples{left}) << pan << " " << volume << " " << sample;
    EXPECT_EQ(heard(1), Samples{right}) << pan << " " << volume << " " << sample;
  }
}

TEST_F(SimulatedAudio, SourcesAddUpAndTheSumSaturates) {
  const auto one = looping({30000, -30000, 30000}), two = looping({30000, -30000, -30000});
  QueueUnderTest queue(*output_);
  queue.enqueue({-30000, 0, 5});
  one->play();
  two->play();
  queue->start();
  EXPECT_EQ(heardInBoth(6), (Samples{30000, -32768, 5, 32767, -32768, 0}));
}

TEST_F(SimulatedAudio, AChangeIsHeardAtItsOwnSample) {
  const auto player = looping({100});
  player->setPan(-1);
  play(3);
  player->play();
  play(2);
  player->setPan(1);
  play(1);
  player->setVolume(0.5F);
  play(2);
  player->stop();
  play(1);
  EXPECT_EQ(heard(0), (Samples{0, 0, 0, 100, 100, 0, 0, 0, 0}));
  EXPECT_EQ(heard(1), (Samples{0, 0, 0, 0, 0, 100, 50, 50, 0}));
}

TEST_F(SimulatedAudio, AWaveFileIsReadWholeOrNotAtAll) {
  Bytes whole = contract::waveFile({1, -2, 32767, -32768, 256});
  const Bytes odd{'L', 'I', 'S', 'T', 3, 0, 0, 0, 'o', 'd', 'd', 0};
  whole.insert(whole.begin() + 12, odd.begin(), odd.end());
  whole[4] = static_cast<std::uint8_t>(whole[4] + odd.size());
  const auto player = output_->playerWithData(whole);
  ASSERT_TRUE(player);
  player->play();
  EXPECT_EQ(heardInBoth(6), (Samples{1, -2, 32767, -32768, 256, 0}));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));  // its own bounds
    EXPECT_FALSE(output_->playerWithData(cut)) << size;
  }
}

}  // namespace
}  // namespace orn
