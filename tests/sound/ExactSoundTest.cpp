#include <cstdlib>
#include <cstring>
#include <random>

#include "SoundFixture.h"

#include <ORNHearingTestSDK/audio/WaveChange.h>

namespace orn {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kBlock = 3840;  // samples

/// An output that notes what is enqueued to its queues; a new note begins at each ear.
struct NotingOutput final : AudioOutput {
  struct Queue final : AudioQueue {
    std::unique_ptr<AudioQueue> real;
    std::vector<Samples>& notes;
    std::mutex& mutex;

    Queue(std::vector<Samples>& noted, std::mutex& guard) : notes(noted), mutex(guard) {}
    AudioQueueBuffer* allocateBuffer(std::uint32_t size) override { return real->allocateBuffer(size); }
    std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override {
      {
        const std::lock_guard lock(mutex);
        Samples block(buffer.mAudioDataByteSize / 2);
        std::memcpy(block.data(), buffer.mAudioData.data(), 2 * block.size());
        notes.back().insert(notes.back().end(), block.begin(), block.end());
      }
      return real->enqueueBuffer(buffer);
    }
    std::error_code setVolume(float volume) override { return real->setVolume(volume); }
    std::error_code start() override { return real->start(); }
    std::error_code pause() override { return real->pause(); }
    std::error_code stop() override { return real->stop(); }
  };

  explicit NotingOutput(std::shared_ptr<AudioOutput> output) : real(std::move(output)) {}
  std::error_code useCurrentDevice() override { return real->useCurrentDevice(); }
  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                             AudioQueue::OutputCallback callback) override {
    auto queue = std::make_unique<Queue>(notes, mutex);
    queue->real = real->newOutputQueue(
        format, [queue = queue.get(), callback](AudioQueue&, AudioQueueBuffer& buffer) { callback(*queue, buffer); });
    return queue;
  }
  std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string& path) override {
    return real->playerWithContentsOfFile(path);
  }
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> file) override {
    return real->playerWithData(file);
  }

  std::shared_ptr<AudioOutput> real;
  std::vector<Samples> notes{1};
  std::mutex mutex;
};

/// Goes through recorded samples as those that were sent with silence put in between.
class Comparison {
 public:
  explicit Comparison(const Samples& recorded) : recorded_(recorded) {}

  /// Goes on as long as the recorded samples are those sent or silence; gives how many of those sent were found.
  std::size_t follow(const Samples& sent) {
    std::size_t found = 0;
    bool isInGap = true;  // before the first
    gaps_ = 0;
    while (next_ < recorded_.size() && found < sent.size()) {
      if (recorded_[next_] == sent[found]) {
        ++found;
        isInGap = false;
      } else if (recorded_[next_] == 0) {
        if (!isInGap) ++gaps_;
        isInGap = true;
      } else {
        break;
      }
      ++next_;
    }
    return found;
  }

  /// Leaves out what a start over older sound lets through until these samples begin; gives how many samples that were.
  /// The start drops what the server held, and with it so many of the new ones at the most where the server had taken
  /// them already: those go from the samples.
  std::size_t seek(Samples& sent, std::size_t mostLost) {
    std::size_t loud = 0;
    for (; next_ + kEnough < recorded_.size(); ++next_) {
      for (std::size_t lost = 0; lost <= mostLost; lost += kBlock) {
        if (!isAt(next_, sent, lost)) continue;
        sent.erase(sent.begin(), sent.begin() + static_cast<std::ptrdiff_t>(lost));
        return loud;
      }
      if (recorded_[next_] != 0) ++loud;
    }
    return loud;
  }

  /// How often silence was put into what was found last.
  int gaps() const { return gaps_; }

 private:
  static constexpr std::size_t kEnough = 480;

  bool isAt(std::size_t place, const Samples& sent, std::size_t from) const {
    return std::equal(sent.begin() + static_cast<std::ptrdiff_t>(from),
                      sent.begin() + static_cast<std::ptrdiff_t>(from + kEnough),
                      recorded_.begin() + static_cast<std::ptrdiff_t>(place));
  }

  const Samples& recorded_;
  std::size_t next_ = 0;
  int gaps_ = 0;
};

Samples withoutSilenceAtItsStart(Samples samples) {
  samples.erase(samples.begin(),
                std::find_if(samples.begin(), samples.end(), [](std::int16_t one) { return one != 0; }));
  return samples;
}

using ExactSound = SoundTest;

TEST_P(ExactSound, EverySampleOfAWholeTestReachesTheAudiometer) {
  server_.addAudiometer();
  usePlatform();
  const auto noting = std::make_shared<NotingOutput>(output_);
  Platform platform = Platform::current();
  platform.audioOutput = noting;
  Platform::setCurrent(platform);
  const Recording recording(server_, "audiometer");

  int tones = 0;
  simulation::TestWatch watch;
  std::shared_ptr<simulation::TestRun> run;
  watch.tonePlays = [&](const std::string&, const std::string&, bool) {
    if (++tones % 3 == 0) loop_->performAfterDelay(2s, [&] { run->press(); });
    if (tones != 4) return;
    // In mid-fade.
    loop_->performAfterDelay(300ms, [&] { run->pauseTest(); });
    loop_->performAfterDelay(4s, [&] { run->continueTest(); });
  };
  watch.earEnds = [&](simulation::TestRun& test, bool nextIsLeft) {
    loop_->performAfterDelay(4s, [&, nextIsLeft] {
      {
        const std::lock_guard lock(noting->mutex);
        noting->notes.emplace_back();
      }
      test.startEar(nextIsLeft);
    });
  };
  run = newTest(OutputPath::Audiometer, watch);
  run->startEar(false);
  ASSERT_TRUE(loop_->runUntil([&] { return run->isOver(); })) << tones << " tones";
  loop_->runFor(300ms);

  constexpr std::size_t inFlight = 3 * kBlock;  // what a pause keeps back
  ASSERT_EQ(noting->notes.size(), 2U);
  const auto [recorded, other] = recording.channels();
  EXPECT_EQ(recorded, other);
  Comparison comparison(recorded);
  const Samples right = withoutSilenceAtItsStart(noting->notes[0]);
  Samples left = withoutSilenceAtItsStart(noting->notes[1]);
  ASSERT_GT(right.size(), 48000U);
  EXPECT_GE(comparison.follow(right), right.size() - inFlight);
  EXPECT_EQ(comparison.gaps(), 2) << "one at the pause, one after the ear";
  ASSERT_GT(left.size(), 48000U);
  // PipeWire takes more than a block at a time here.
  const std::size_t mostLost = GetParam() == ServerKind::PipeWire ? 2 * kBlock : 0;
  EXPECT_LT(comparison.seek(left, mostLost), inFlight) << "of the right ear's last tone";
  EXPECT_GE(comparison.follow(left), left.size() - inFlight);
  EXPECT_LE(comparison.gaps(), 1) << "only after the ear";
  EXPECT_EQ(output_->lapses(), 0U);
}

TEST_P(ExactSound, ARecordingIsHeardByItsPanAndGainAndNeverRewound) {
  server_.addSink("earphones", "Earphones", {"device.form_factor=headphone"});
  usePlatform();
  std::mt19937 chance(1);
  Samples noise(48000);
  for (std::int16_t& one : noise) one = static_cast<std::int16_t>(1000 + chance() % 30000);
  std::vector<std::uint8_t> file(44 + 2 * noise.size());
  std::uint8_t* header = createWaveHeader(static_cast<std::uint32_t>(2 * noise.size()), 1, 48000, 16);
  std::memcpy(file.data(), header, 44);
  freeWaveHeader(header);
  std::memcpy(file.data() + 44, noise.data(), 2 * noise.size());

  std::size_t place = 0;  // of the sample that is next, in the recording
  for (const auto& [pan, gain] : {std::pair{-1.0F, 0.37F}, {1.0F, 0.0021F}, {0.0F, 1.0F}, {-0.5F, 2.5F}}) {
    const auto player = output_->playerWithData(file);
    player->setNumberOfLoops(-1);
    player->setPan(pan);
    player->setVolume(gain);
    place = 0;
    for (int turn = 0; turn < 2; ++turn) {
      const Recording recording(server_, "earphones");
      EXPECT_EQ(player->play(), std::error_code());
      loop_->runFor(turn == 0 ? 1300ms : 300ms);
      player->stop();
      loop_->runFor(200ms);
      const std::array heard = recording.channels();
      const float gains[] = {gain * std::min(1.0F, 1 - pan), gain * std::min(1.0F, 1 + pan)};
      const std::size_t ear = gains[0] == 0 ? 1 : 0;
      std::size_t first = 0;
      while (first < heard[ear].size() && heard[ear][first] == 0) ++first;
      ASSERT_LT(first, heard[ear].size()) << pan;
      const auto expected = [&](std::size_t at, std::size_t channel) {
        return std::clamp(static_cast<float>(noise[at % noise.size()]) * gains[channel], -32768.0F, 32767.0F);
      };
      // Where it went on: within what the server had asked for but not played.
      std::size_t start = turn == 0 ? 0 : place - 4 * 960;
      const auto fits = [&](std::size_t from) {
        for (std::size_t i = 0; i < 200; ++i) {
          if (std::abs(static_cast<float>(heard[ear][first + i]) - expected(from + i, ear)) > 1) return false;
        }
        return true;
      };
      while (start <= place && !fits(start)) ++start;
      ASSERT_LE(start, place) << "pan " << pan << " turn " << turn;
      std::size_t last = heard[ear].size();
      while (last > first && heard[ear][last - 1] == 0) --last;
      ASSERT_GT(last - first, 10000U);
      for (std::size_t i = first; i < last; ++i) {
        for (const std::size_t channel : {0U, 1U}) {
          ASSERT_NEAR(heard[channel][i], expected(start + i - first, channel), 1) << pan << " frame " << i - first;
        }
      }
      place = start + last - first;
    }
  }
  EXPECT_EQ(output_->lapses(), 0U);
}

ORN_ON_BOTH_SERVERS(ExactSound);

}  // namespace
}  // namespace orn
