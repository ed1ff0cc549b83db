#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioOutput.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedFileManager.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedRunLoop.h>

namespace orn {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Samples = std::vector<std::int16_t>;

constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

AudioStreamBasicDescription toneFormat() {
  return {48000.0,
          kAudioFormatLinearPCM,
          kLinearPCMFormatFlagIsSignedInteger | kLinearPCMFormatFlagIsPacked,
          2,
          1,
          2,
          1,
          16,
          0};
}

Bytes littleEndian(std::uint32_t value, int width) {
  Bytes bytes;
  for (int i = 0; i < width; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
  return bytes;
}

Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Bytes text(const char* fourLetters) { return {fourLetters, fourLetters + 4}; }

Bytes bytesOf(const Samples& samples) {
  Bytes bytes;
  for (const std::int16_t sample : samples) {
    const Bytes two = littleEndian(static_cast<std::uint16_t>(sample), 2);
    bytes.insert(bytes.end(), two.begin(), two.end());
  }
  return bytes;
}

Bytes chunk(const char* name, const Bytes& body) {
  return joined({text(name), littleEndian(static_cast<std::uint32_t>(body.size()), 4), body, Bytes(body.size() % 2)});
}

Bytes waveOf(const Bytes& chunks, const char* group = "RIFF", const char* kind = "WAVE") {
  const auto size = static_cast<std::uint32_t>(chunks.size() + 4);
  return joined({text(group), littleEndian(size, 4), text(kind), chunks});
}

Bytes format(std::uint32_t tag = 1, std::uint32_t channels = 1, std::uint32_t rate = 48000, std::uint32_t bits = 16) {
  const std::uint32_t frame = channels * bits / 8;
  return chunk("fmt ", joined({littleEndian(tag, 2), littleEndian(channels, 2), littleEndian(rate, 4),
                               littleEndian(rate * frame, 4), littleEndian(frame, 2), littleEndian(bits, 2)}));
}

Bytes wave(const Samples& samples) { return waveOf(joined({format(), chunk("data", bytesOf(samples))})); }

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

  Samples heard(std::int64_t frames, std::size_t channel) {
    play(frames);
    return heard(channel);
  }

  /// The next frames of a sound that is the same in both channels.
  Samples heardInBoth(std::int64_t frames) {
    Samples left = heard(frames, 0);
    EXPECT_EQ(left, heard(1));
    return left;
  }

  std::unique_ptr<AudioQueue> newQueue() {
    return output_->newOutputQueue(toneFormat(), [this](AudioQueue& queue, AudioQueueBuffer& buffer) {
      handedBack_.push_back(&buffer);
      if (refill_) refill_(queue, buffer);
    });
  }

  static void fill(AudioQueueBuffer& buffer, const Samples& samples) {
    const Bytes bytes = bytesOf(samples);
    std::copy(bytes.begin(), bytes.end(), buffer.mAudioData.begin());
    buffer.mAudioDataByteSize = static_cast<std::uint32_t>(bytes.size());
  }

  /// A new buffer with those samples, enqueued.
  AudioQueueBuffer* enqueue(AudioQueue& queue, const Samples& samples) {
    AudioQueueBuffer* buffer = queue.allocateBuffer(static_cast<std::uint32_t>(2 * samples.size()));
    fill(*buffer, samples);
    EXPECT_FALSE(queue.enqueueBuffer(*buffer));
    return buffer;
  }

  std::unique_ptr<AudioPlayer> looping(const Samples& samples) {
    auto player = output_->playerWithData(wave(samples));
    player->setNumberOfLoops(-1);
    return player;
  }

  std::shared_ptr<SimulatedRunLoop> loop_ = std::make_shared<SimulatedRunLoop>();
  std::unique_ptr<SimulatedAudioOutput> output_ = std::make_unique<SimulatedAudioOutput>(loop_);
  std::vector<AudioQueueBuffer*> handedBack_;
  AudioQueue::OutputCallback refill_;

 private:
  std::int64_t frames_ = 0;
  std::size_t from_[2] = {0, 0};
};

TEST_F(SimulatedAudio, AQueuePlaysItsBuffersInOrderInBothChannelsAndHandsThemBack) {
  const auto queue = newQueue();
  AudioQueueBuffer* first = enqueue(*queue, {1, -2, 3});
  AudioQueueBuffer* second = enqueue(*queue, {32767, -32768});
  EXPECT_EQ(heardInBoth(2), (Samples{0, 0}));  // not started
  queue->start();
  EXPECT_EQ(heardInBoth(2), (Samples{1, -2}));
  EXPECT_TRUE(handedBack_.empty());
  EXPECT_EQ(heardInBoth(1), (Samples{3}));
  EXPECT_EQ(handedBack_, (std::vector{first}));
  EXPECT_EQ(heardInBoth(4), (Samples{32767, -32768, 0, 0}));
  EXPECT_EQ(handedBack_, (std::vector{first, second}));
  enqueue(*queue, {7});  // ran dry, goes on
  EXPECT_EQ(heardInBoth(2), (Samples{7, 0}));
}

TEST_F(SimulatedAudio, BuffersRefilledByTheCallbackFollowWithoutAGap) {
  std::int16_t next = 0;
  const auto counting = [&next](std::size_t count) {
    Samples samples(count);
    for (auto& sample : samples) sample = next++;
    return samples;
  };
  refill_ = [&](AudioQueue& queue, AudioQueueBuffer& buffer) {
    fill(buffer, counting(buffer.mAudioData.size() / 2));
    queue.enqueueBuffer(buffer);
  };
  const auto queue = newQueue();
  for (const std::size_t size : {5U, 3U, 700U}) enqueue(*queue, counting(size));
  queue->start();
  const Samples samples = heardInBoth(20000);
  for (std::size_t i = 0; i < samples.size(); ++i) ASSERT_EQ(samples[i], static_cast<std::int16_t>(i));
}

TEST_F(SimulatedAudio, PauseKeepsTheVerySampleAndStopDropsWhatIsQueued) {
  const auto queue = newQueue();
  AudioQueueBuffer* buffer = enqueue(*queue, {1, 2, 3, 4});
  enqueue(*queue, {5, 6});
  queue->start();
  EXPECT_EQ(heardInBoth(3), (Samples{1, 2, 3}));
  queue->pause();
  EXPECT_EQ(heardInBoth(3), (Samples{0, 0, 0}));
  queue->start();
  queue->start();
  EXPECT_EQ(heardInBoth(2), (Samples{4, 5}));
  handedBack_.clear();
  queue->stop();
  queue->start();
  EXPECT_EQ(heardInBoth(2), (Samples{0, 0}));
  EXPECT_TRUE(handedBack_.empty());
  queue->enqueueBuffer(*buffer);
  EXPECT_EQ(heardInBoth(5), (Samples{1, 2, 3, 4, 0}));
}

TEST_F(SimulatedAudio, ABufferEnqueuedAgainIsPlayedLastWithItsNewContents) {
  const auto queue = newQueue();
  AudioQueueBuffer* first = enqueue(*queue, {1, 1, 1});
  enqueue(*queue, {2, 2});
  queue->start();
  EXPECT_EQ(heardInBoth(1), (Samples{1}));
  fill(*first, {3, 4});
  queue->enqueueBuffer(*first);
  fill(*first, {9, 9, 9});  // the bytes were copied
  EXPECT_EQ(heardInBoth(6), (Samples{2, 2, 3, 4, 0, 0}));
  EXPECT_EQ(handedBack_.size(), 2U);
}

TEST_F(SimulatedAudio, AQueuesVolumeRoundsHalvesAwayFromZero) {
  const struct {
    float volume;
    Samples out;
  } table[] = {{1.0F, {1, -1, 3, -3, 32767, -32768}}, {0.5F, {1, -1, 2, -2, 16384, -16384}},
               {0.25F, {0, 0, 1, -1, 8192, -8192}},   {0.0F, {0, 0, 0, 0, 0, 0}},
               {2.0F, {1, -1, 3, -3, 32767, -32768}}, {-1.0F, {0, 0, 0, 0, 0, 0}},
               {kNoNumber, {0, 0, 0, 0, 0, 0}}};
  const auto queue = newQueue();
  queue->start();
  for (const auto& [volume, out] : table) {
    queue->setVolume(volume);
    enqueue(*queue, {1, -1, 3, -3, 32767, -32768});
    EXPECT_EQ(heardInBoth(6), out) << volume;
  }
}

TEST_F(SimulatedAudio, ByteSizesBeyondTheRoomAndOddOnesAreCutAndEmptyOrForeignBuffersRefused) {
  const auto queue = newQueue(), other = newQueue();
  queue->start();
  AudioQueueBuffer* buffer = queue->allocateBuffer(6);
  fill(*buffer, {1, 2, 3});
  for (const auto& [size, out] : {std::pair{1000U, Samples{1, 2, 3, 0}}, {5U, {1, 2, 0, 0}}, {2U, {1, 0, 0, 0}}}) {
    buffer->mAudioDataByteSize = size;
    EXPECT_FALSE(queue->enqueueBuffer(*buffer));
    EXPECT_EQ(heardInBoth(4), out) << size;
  }
  AudioQueueBuffer* foreign = other->allocateBuffer(4);
  foreign->mAudioDataByteSize = 4;
  AudioQueueBuffer own{foreign->mAudioData, 4};
  for (AudioQueueBuffer* bad : {queue->allocateBuffer(4), foreign, &own}) {
    EXPECT_EQ(queue->enqueueBuffer(*bad), std::errc::invalid_argument);
  }
  play(10);
  EXPECT_EQ(handedBack_.size(), 3U);
}

TEST_F(SimulatedAudio, OnlyTheToneFormatMakesAQueue) {
  const std::vector<std::function<void(AudioStreamBasicDescription&)>> changes = {
      [](auto& one) { one.mSampleRate = 44100; },    [](auto& one) { one.mSampleRate = kNoNumber; },
      [](auto& one) { one.mFormatID = 0x61616320; }, [](auto& one) { one.mFormatFlags = 4; },
      [](auto& one) { one.mFormatFlags |= 2; },      [](auto& one) { one.mChannelsPerFrame = 2; },
      [](auto& one) { one.mBitsPerChannel = 32; }};
  for (const auto& change : changes) {
    auto description = toneFormat();
    change(description);
    EXPECT_FALSE(output_->newOutputQueue(description, [](AudioQueue&, AudioQueueBuffer&) {}));
  }
}

TEST_F(SimulatedAudio, PanAndVolumeScaleEachChannelOfAPlayer) {
  const float belowHalf = std::nextafter(0.5F, 0.0F);
  const struct {
    float pan, volume;
    std::int16_t sample, left, right;
  } table[] = {{0, 1, 100, 100, 100},         {-1, 1, 100, 100, 0},          {1, 1, 100, 0, 100},
               {0.5F, 1, 100, 50, 100},       {-0.25F, 1, -100, -100, -75},  {-7, 1, 100, 100, 0},
               {0.5F, 0.5F, 5, 1, 3},         {-0.5F, 0.5F, -5, -3, -1},     {0, belowHalf, 1, 0, 0},
               {0, belowHalf, -1, 0, 0},      {0, 2, 20000, 32767, 32767},   {0, 2, -20000, -32768, -32768},
               {0, -1, -32768, 32767, 32767}, {0, 1e38F, 100, 32767, 32767}, {1, 1e38F, -100, 0, -32768},
               {kNoNumber, 1, 100, 0, 0},     {0, kNoNumber, 100, 0, 0}};
  for (const auto& [pan, volume, sample, left, right] : table) {
    const auto player = looping({sample});
    player->setVolume(volume);
    player->setPan(pan);
    player->play();
    EXPECT_EQ(heard(1, 0), Samples{left}) << pan << " " << volume << " " << sample;
    EXPECT_EQ(heard(1), Samples{right}) << pan << " " << volume << " " << sample;
  }
}

TEST_F(SimulatedAudio, APlayerLoopsWithoutASeamAndGoesOnFromWhereItWas) {
  const auto player = looping({1, 2, 3});
  EXPECT_EQ(heardInBoth(1), (Samples{0}));
  player->play();
  EXPECT_EQ(heardInBoth(5), (Samples{1, 2, 3, 1, 2}));
  player->stop();
  EXPECT_EQ(heardInBoth(4), (Samples{0, 0, 0, 0}));
  player->play();
  player->play();
  EXPECT_EQ(heardInBoth(3), (Samples{3, 1, 2}));
  player->setNumberOfLoops(1);  // plays on to the end, and once more
  EXPECT_EQ(heardInBoth(6), (Samples{3, 1, 2, 3, 0, 0}));
}

TEST_F(SimulatedAudio, AChangeIsHeardAtItsOwnSample) {
  const auto player = looping({100});
  player->setPan(-1);
  play(1001);
  player->play();
  play(1000);
  player->setPan(1);
  play(1);
  player->setVolume(0.5F);
  play(5000);
  player->stop();
  play(7);
  const auto rightAndLeft = [](std::size_t at) {
    const bool on = at >= 1001 && at < 7002;
    return std::pair<std::int16_t, std::int16_t>{!on || at < 2001 ? 0 : (at < 2002 ? 100 : 50),
                                                 on && at < 2001 ? 100 : 0};
  };
  const Samples left = heard(0), right = heard(1);
  ASSERT_EQ(left.size(), 7009U);
  for (std::size_t i = 0; i < left.size(); ++i) ASSERT_EQ(std::pair(right[i], left[i]), rightAndLeft(i)) << i;
}

TEST_F(SimulatedAudio, SourcesAddUpAndTheSumSaturates) {
  const auto one = looping({30000, -30000, 30000}), two = looping({30000, -30000, 1}), three = looping({0, 0, -30000});
  const auto queue = newQueue();
  enqueue(*queue, {-30000, 0, 5});
  for (AudioPlayer* player : {one.get(), two.get(), three.get()}) player->play();
  queue->start();
  EXPECT_EQ(heardInBoth(3), (Samples{30000, -32768, 6}));
  EXPECT_EQ(heardInBoth(3), (Samples{32767, -32768, 1}));
}

TEST_F(SimulatedAudio, AListenerHearsEveryFrameWithoutAGapAndMayAddOthers) {
  std::int64_t next = 0;
  int others = 0;
  output_->addListener([&](std::int64_t first, std::span<const std::int16_t> samples) {
    if (next == 0) {
      for (int i = 0; i < 20; ++i) output_->addListener([&others](auto, auto) { ++others; });
    }
    EXPECT_EQ(first, next);
    EXPECT_LE(samples.size(), 2 * 3840U);
    next = first + static_cast<std::int64_t>(samples.size() / 2);
  });
  const auto player = looping({1});
  for (const std::int64_t frames : {1, 7, 3840, 1, 3839, 48000}) {
    play(frames);
    player->setVolume(1);  // brings the output up to the present
  }
  EXPECT_EQ(next, 55688);
  EXPECT_GE(others, 20 * 14);
}

TEST_F(SimulatedAudio, QueuesAndPlayersMayOutliveTheirOutputAndAreSilentThen) {
  int framesHeard = 0;
  output_->addListener([&](auto, auto) { ++framesHeard; });
  const auto queue = newQueue();
  const auto player = looping({1, 2, 3});
  queue->start();
  player->play();
  play(10);
  output_.reset();
  framesHeard = 0;
  enqueue(*queue, {1, 2, 3});
  loop_->runFor(std::chrono::seconds(1));
  player->stop();
  queue->pause();
  EXPECT_EQ(framesHeard, 0);
}

TEST_F(SimulatedAudio, ReadsAWaveFileWithFurtherChunks) {
  const Samples samples{1, -2, 32767, -32768, 256};
  const Bytes list = chunk("LIST", {'o', 'd', 'd'}), data = chunk("data", bytesOf(samples));
  for (const Bytes& chunks : {joined({format(), data}), joined({list, format(), list, data, list}),
                              joined({format(), data, text("junk")}), joined({format(), chunk("fact", {}), data})}) {
    const auto player = output_->playerWithData(waveOf(chunks));
    ASSERT_TRUE(player);
    player->play();
    EXPECT_EQ(heardInBoth(6), (Samples{1, -2, 32767, -32768, 256, 0}));
  }
}

TEST_F(SimulatedAudio, AWaveFileCutOffAnywhereMakesNoPlayer) {
  const Bytes whole = waveOf(joined({chunk("LIST", {'o', 'd', 'd'}), format(), chunk("data", bytesOf({1, 2, 3}))}));
  ASSERT_TRUE(output_->playerWithData(whole));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));  // its own bounds
    EXPECT_FALSE(output_->playerWithData(cut)) << size;
  }
}

TEST_F(SimulatedAudio, OtherFilesMakeNoPlayer) {
  const Bytes data = chunk("data", bytesOf({1, 2})), huge = joined({text("data"), littleEndian(0xFFFFFFFF, 4)});
  const std::pair<const char*, Bytes> table[] = {
      {"floating point", waveOf(joined({format(3, 1, 48000, 16), data}))},
      {"extensible", waveOf(joined({format(0xFFFE), data}))},
      {"stereo", waveOf(joined({format(1, 2), data}))},
      {"no channel", waveOf(joined({format(1, 0), data}))},
      {"44100 Hz", waveOf(joined({format(1, 1, 44100), data}))},
      {"8 bits", waveOf(joined({format(1, 1, 48000, 8), data}))},
      {"24 bits", waveOf(joined({format(1, 1, 48000, 24), data}))},
      {"big-endian", waveOf(joined({format(), data}), "RIFX")},
      {"another kind", waveOf(joined({format(), data}), "RIFF", "AVI ")},
      {"no format", waveOf(data)},
      {"format after data", waveOf(joined({data, format()}))},
      {"short format", waveOf(joined({chunk("fmt ", {1, 0, 1, 0, 0x80, 0xBB, 0, 0, 0, 0x77, 1, 0, 2, 0}), data}))},
      {"no data", waveOf(format())},
      {"size beyond the end", waveOf(joined({format(), huge, Bytes(8)}))}};
  for (const auto& [name, file] : table) EXPECT_FALSE(output_->playerWithData(file)) << name;
}

TEST_F(SimulatedAudio, APlayerOfAFileOrNoneIfItCannotBeRead) {
  SimulatedFileManager files;
  const std::string folder = files.documentsDirectory(), path = folder + "/tone.wav";
  EXPECT_FALSE(output_->playerWithContentsOfFile(path));
  EXPECT_FALSE(output_->playerWithContentsOfFile(folder));
  EXPECT_FALSE(output_->playerWithContentsOfFile(""));
  files.writeAtomically(path, wave({4, 5}));
  const auto player = output_->playerWithContentsOfFile(path);
  ASSERT_TRUE(player);
  files.removeFile(path);
  player->play();
  EXPECT_EQ(heardInBoth(3), (Samples{4, 5, 0}));
}

}  // namespace
}  // namespace orn
