#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/audio/AudioRoute.h>
#include <ORNHearingTestSDK/audio/ORNPlayer.h>
#include <ORNHearingTestSDK/audio/ORNPlayerByArray.h>
#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>
#include <ORNHearingTestSDK/audio/Player.h>
#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/contracts/AudioCheck.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "SampleBytes.h"

namespace orn {
namespace {

using namespace std::chrono_literals;
using contract::waveFile;
using testing::Each;
using testing::ElementsAre;

static_assert(!std::is_default_constructible_v<ORNPlayer> && !std::is_copy_constructible_v<ORNPlayer>, "there is one");

constexpr std::size_t kBlock = 3840;  // samples of 80 ms

/// The simulated output, and what files it was given.
struct NotingOutput final : AudioOutput {
  explicit NotingOutput(std::shared_ptr<SimulatedAudioOutput> real) : output(std::move(real)) {}

  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                             AudioQueue::OutputCallback callback) override {
    return output->newOutputQueue(format, std::move(callback));
  }
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> wavFile) override {
    files.emplace_back(wavFile.begin(), wavFile.end());
    return output->playerWithData(wavFile);
  }

  std::shared_ptr<SimulatedAudioOutput> output;
  std::vector<Bytes> files;
};

class Players : public testing::Test {
 protected:
  Players() {
    Platform platform = machine_.platform();
    platform.audioOutput = output_;
    Platform::setCurrent(platform);
    machine_.audioOutput->keepSamples();
  }
  ~Players() override { Platform::clearCurrent(); }

  /// What comes out on the left within the span.
  Samples heard(std::chrono::nanoseconds span) {
    const std::size_t from = machine_.audioOutput->keptSamples().size();
    machine_.virtualTime->runFor(span);
    return channelFrom(from, 0);
  }

  Samples channelFrom(std::size_t from, std::size_t channel) const {
    const Samples& kept = machine_.audioOutput->keptSamples();
    Samples samples;
    for (std::size_t i = from + channel; i < kept.size(); i += 2) samples.push_back(kept[i]);
    return samples;
  }

  SimulatedPlatform machine_;
  std::shared_ptr<NotingOutput> output_ = std::make_shared<NotingOutput>(machine_.audioOutput);
};

/// Gives whole blocks, the first of them all 1, the next all 2, then nothing.
struct Blocks final : PlayerGetDataSouce {
  explicit Blocks(std::size_t number) : count(number) {}
  std::span<const std::uint8_t> playerGetData() override {
    if (pulls++ >= count) return {};
    return block = bytesOf(Samples(kBlock, static_cast<std::int16_t>(pulls)));
  }
  std::size_t count, pulls = 0;
  Bytes block;
};

/// Each run of equal samples by its value and how many blocks it lasts, such as "1x1 2x0.5".
std::string runs(const Samples& samples) {
  std::string text;
  for (auto from = samples.begin(); from != samples.end();) {
    const auto to = std::find_if(from, samples.end(), [&](auto sample) { return sample != *from; });
    text += std::to_string(*from) + "x" + testing::PrintToString(static_cast<double>(to - from) / kBlock) + " ";
    from = to;
  }
  return text;
}

class StreamPlayer : public Players {
 protected:
  void startWith(const std::shared_ptr<Blocks>& source) {
    player_->setDataSouce(source);
    player_->start();
  }
  const std::shared_ptr<Player> player_ = Player::shareInstance();
};

TEST(PlayersDeathTest, APlatformMayBeClearedByAStaticObjectThatOutlivesThem) {
  struct HostApplication {
    HostApplication() { Platform::setCurrent(machine.platform()); }
    ~HostApplication() { Platform::clearCurrent(); }
    SimulatedPlatform machine;
  };
  const auto wholeProgram = [] {
    static HostApplication host;
    Player::shareInstance();
    ORNPlayer::shareInstance();
    std::exit(0);
  };
  EXPECT_EXIT(wholeProgram(), testing::ExitedWithCode(0), "");
}

TEST_F(StreamPlayer, PlaysTheSourcesBlocksInOrderAndPullsOnePer80Milliseconds) {
  const auto source = std::make_shared<Blocks>(20);
  machine_.virtualTime->runFor(33ms);
  startWith(source);
  EXPECT_EQ(source->pulls, 3U);
  EXPECT_EQ(runs(heard(800ms)), "1x1 2x1 3x1 4x1 5x1 6x1 7x1 8x1 9x1 10x1 ");
  EXPECT_EQ(source->pulls, 13U);
  player_->setVolume(0);
  EXPECT_EQ(runs(heard(160ms)), "0x2 ");
}

TEST_F(StreamPlayer, ASourceThatHasNothingOrHasGoneRepeatsWhatTheBuffersHold) {
  auto source = std::make_shared<Blocks>(4);
  startWith(source);
  EXPECT_EQ(runs(heard(640ms)), "1x1 2x1 3x1 4x1 2x1 3x1 4x1 2x1 ");
  source.reset();
  EXPECT_EQ(runs(heard(400ms)), "3x1 4x1 2x1 3x1 4x1 ");
  startWith(std::make_shared<Blocks>(3));  // a new session goes on with its own blocks
  EXPECT_EQ(runs(heard(240ms)), "1x1 2x1 3x1 ");
}

TEST_F(StreamPlayer, PauseKeepsTheVerySampleAndPullsNothing) {
  const auto source = std::make_shared<Blocks>(9);
  startWith(source);
  EXPECT_EQ(runs(heard(100ms)), "1x1 2x0.25 ");
  player_->pause();
  const std::size_t pulls = source->pulls;
  EXPECT_EQ(runs(heard(400ms)), "0x5 ");
  EXPECT_EQ(source->pulls, pulls);
  player_->play();
  player_->play();
  EXPECT_EQ(runs(heard(140ms)), "2x0.75 3x1 ");
  player_->stop();
  player_->play();
  EXPECT_EQ(runs(heard(80ms)), "0x1 ");
}

class ToneBank : public Players {
 protected:
  /// What a second of a player sounds like, such as "1000 Hz quiet left".
  std::string sound(const std::shared_ptr<AudioPlayer>& tone) {
    tone->play();
    const std::size_t from = machine_.audioOutput->keptSamples().size();
    machine_.virtualTime->runFor(1s);
    tone->stop();
    std::string text;
    for (const std::size_t channel : {0U, 1U}) {
      const Samples samples = channelFrom(from, channel);
      int cycles = 0;
      for (std::size_t i = 1; i < samples.size(); ++i) cycles += samples[i - 1] <= 0 && samples[i] > 0 ? 1 : 0;
      const bool isLoud = *std::max_element(samples.begin(), samples.end()) > 1000;
      if (cycles == 0) continue;
      text += std::to_string(cycles) + (isLoud ? " Hz loud" : " Hz quiet") + (channel == 0 ? " left" : " right");
    }
    return text;
  }

  const std::shared_ptr<ORNPlayer> bank_ = ORNPlayer::shareInstance();
};

TEST_F(ToneBank, FrequencyAndLevelChooseTheFileAndTheEarItsSide) {
  const struct {
    std::int32_t hz;
    std::int64_t db;
    bool isleft;
    const char* sound;
  } table[] = {{125, 0, true, "125 Hz quiet left"},
               {250, 40, true, "250 Hz quiet left"},
               {500, 41, true, "500 Hz loud left"},
               {1000, 41, true, "1000 Hz loud left"},
               {2000, 120, false, "2000 Hz loud right"},
               {4000, -5, false, "4000 Hz quiet right"},
               {8000, 90, false, "8000 Hz loud right"},
               {750, 40, false, "1000 Hz quiet right"},
               {-1000, INT64_MAX, false, "1000 Hz loud right"}};
  for (const auto& [hz, db, isleft, expected] : table) {
    EXPECT_EQ(sound(bank_->playerWithHz(hz, db, isleft)), expected) << hz << " Hz " << db << " dB";
    EXPECT_EQ(sound(bank_->playerWithHzValue(static_cast<std::uint64_t>(hz), db, isleft)), expected) << hz;
  }
  EXPECT_EQ(sound(bank_->playerWithHzValue((1ULL << 32) + 125, 0, true)), "1000 Hz quiet left");  // not cut to 32 bits
}

TEST_F(ToneBank, APlayerIsSharedAndKeepsItsLastSide) {
  const auto left = bank_->playerWithHzValue(1000, -5, true);
  EXPECT_EQ(bank_->playerWithHzValue(1000, 40, false), left);
  EXPECT_EQ(bank_->playerOf1000HzWithDB(0), left);
  EXPECT_NE(bank_->playerOf1000HzWithDB(41), left);
  EXPECT_EQ(sound(left), "1000 Hz quiet right");
  EXPECT_EQ(sound(bank_->playerOf125Hz_40Up()), "125 Hz loud left125 Hz loud right");
}

using OneShot = Players;

TEST_F(OneShot, IsTwoSecondsOfTheTableAtItsAmplitudeLoopingInTheCentre) {
  for (const std::int32_t hz : {125, 250, 500, 1000, 2000, 4000, 8000}) {
    const auto table = sineTable(hz);
    ASSERT_TRUE(table);
    Samples cycle = samplesOf({table->data, static_cast<std::size_t>(table->size)});
    for (auto& sample : cycle) sample = static_cast<std::int16_t>(sample / 2);  // toward zero
    const auto player = ORNPlayerByArray::playerWithHz(hz, 0.3, 0.5, true);
    ASSERT_TRUE(player);
    EXPECT_EQ(output_->files.back().size(), 192044U) << hz;
    player->play();
    const std::size_t from = machine_.audioOutput->keptSamples().size();
    const Samples left = heard(3s);
    player->stop();
    EXPECT_EQ(channelFrom(from, 1), left);
    ASSERT_EQ(left.size(), 144000U);
    for (std::size_t i = 0; i < left.size(); ++i) ASSERT_EQ(left[i], cycle[i % cycle.size()]) << hz << " at " << i;
  }
}

TEST_F(OneShot, TheStopPlayerIsSilentCyclesCountedByTheAmplitude) {
  const struct {
    const char* hz;
    double lastzhenfu;
    std::size_t bytes;
  } table[] = {{"1000hz", 0.5, 5000 * 96}, {"125", 0.0003, 3 * 768}, {"1000", 0.00005, 0}, {"1000", -0.5, 0}};
  for (const auto& [hz, lastzhenfu, bytes] : table) {
    const auto player = ORNPlayer::shareInstance()->playerStopWithShz2(hz, lastzhenfu);
    ASSERT_TRUE(player) << lastzhenfu;
    EXPECT_EQ(output_->files.back(), waveFile(Samples(bytes / 2))) << lastzhenfu;
    player->play();
    EXPECT_THAT(heard(10ms), Each(0));
  }
}

using Route = Players;

TEST_F(Route, TellsWhetherThereAreEarphonesAndTheAddressOfTheLastAudiometer) {
  const std::string first = "AA:BB:CC:DD:EE:FF", second = "11:22:33:44:55:66";
  const AudioPort speaker{"Speaker", first + "-1"}, one{"KV50-1234", first + "-1"}, two{"My KV60", second + "-tsco"};
  const AudioPort bare{"KV50-1234", second}, lower{"kv50-1234", second + "-1"};
  const struct {
    std::optional<std::string> text;
    AudioRouteDescription route;
    bool hasHeadset;
    std::optional<std::string> address;
  } table[] = {{"HeadsetBT", {{}, {}}, true, {}},
               {"Headphones", {{}, {speaker}}, true, {}},
               {"LineHeadset", {{}, {one}}, true, first},
               {"Speaker", {{}, {bare}}, false, {}},
               {"headset", {{one}, {speaker}}, false, {}},
               {std::nullopt, {{}, {one, two}}, false, second},
               {"HeadsetBT", {{}, {two, speaker, one, lower}}, true, first},
               {"HeadsetBT", {{}, {one, bare}}, true, first}};
  for (const auto& [text, route, hasHeadset, address] : table) {
    machine_.audioSession->setRoute(route, text, 0);
    EXPECT_EQ(AudioRoute::hasHeadset(), hasHeadset) << text.value_or("no route");
    EXPECT_EQ(AudioRoute::getKV50Mac(), address) << text.value_or("no route");
  }
}

TEST_F(Route, APlatformThatComesIntoForceIsSetUpForPlayback) {
  EXPECT_EQ(machine_.audioSession->active(), true);
  EXPECT_EQ(machine_.audioSession->category(), AudioSessionCategory::Playback);
  EXPECT_EQ(machine_.audioSession->categoryOptions(), kAudioSessionCategoryOptionAllowBluetooth);
  machine_.audioSession->setActive(false);
  ORNSystemVolumeManager::saveSystemVolume();
  EXPECT_EQ(machine_.audioSession->active(), true) << "for its volume to be there";
  AudioRoute::configAudioSessionToPlayAndRecord();
  EXPECT_EQ(machine_.audioSession->category(), AudioSessionCategory::PlayAndRecord);
}

TEST_F(Route, TheVolumeIsSavedDrivenToFullAndPutBack) {
  machine_.audioSession->setOutputVolume(0.25F);
  ORNSystemVolumeManager::saveSystemVolume();
  ORNSystemVolumeManager::setSystemVolumeToMax();
  EXPECT_EQ(ORNSystemVolumeManager::getSystemVolume(), 1);
  ORNSystemVolumeManager::reStoreSystemVolume();
  EXPECT_EQ(machine_.audioSession->outputVolume(), 0.25F);

  Platform::setCurrent(machine_.platform());
  ORNSystemVolumeManager::reStoreSystemVolume();
  EXPECT_EQ(machine_.audioSession->outputVolume(), 0) << "nothing was saved on this platform";
}

}  // namespace
}  // namespace orn
