#include <cstring>

#include "SoundFixture.h"

namespace orn {
namespace {

using namespace std::chrono_literals;

/// An output that notes what is enqueued to its queues.
class NotingOutput final : public AudioOutput {
 public:
  explicit NotingOutput(std::shared_ptr<AudioOutput> output) : real_(std::move(output)) {}

  Samples notes() const {
    const std::lock_guard lock(mutex_);
    return notes_;
  }

  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                             AudioQueue::OutputCallback callback) override {
    auto queue = std::make_unique<Queue>(*this);
    queue->real = real_->newOutputQueue(
        format, [queue = queue.get(), callback](AudioQueue&, AudioQueueBuffer& buffer) { callback(*queue, buffer); });
    return queue;
  }
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> file) override {
    return real_->playerWithData(file);
  }

 private:
  struct Queue final : AudioQueue {
    explicit Queue(NotingOutput& its) : output(its) {}
    AudioQueueBuffer* allocateBuffer(std::uint32_t size) override { return real->allocateBuffer(size); }
    std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override {
      output.note(buffer);
      return real->enqueueBuffer(buffer);
    }
    std::error_code setVolume(float volume) override { return real->setVolume(volume); }
    std::error_code start() override { return real->start(); }
    std::error_code pause() override { return real->pause(); }
    std::error_code stop() override { return real->stop(); }

    NotingOutput& output;
    std::unique_ptr<AudioQueue> real;
  };

  void note(const AudioQueueBuffer& buffer) {
    const std::lock_guard lock(mutex_);
    const std::size_t before = notes_.size();
    notes_.resize(before + buffer.mAudioDataByteSize / 2);
    std::memcpy(notes_.data() + before, buffer.mAudioData.data(), buffer.mAudioDataByteSize);
  }

  std::shared_ptr<AudioOutput> real_;
  mutable std::mutex mutex_;
  Samples notes_;
};

Samples withoutSilenceAtItsStart(Samples samples) {
  samples.erase(samples.begin(),
                std::find_if(samples.begin(), samples.end(), [](std::int16_t one) { return one != 0; }));
  return samples;
}

using ExactSound = SoundTest;

TEST_P(ExactSound, EverySampleOfAnEarsTonesReachesTheAudiometer) {
  server_.addAudiometer();
  usePlatform();
  const auto noting = std::make_shared<NotingOutput>(output_);
  Platform platform = Platform::current();
  platform.audioOutput = noting;
  Platform::setCurrent(platform);
  const Recording recording(server_, "audiometer");

  int tones = 0;
  bool isOver = false;
  simulation::TestWatch watch;
  std::shared_ptr<simulation::TestRun> run;
  watch.tonePlays = [&](const std::string&, const std::string&, bool) {
    if (++tones % 3 == 0) loop_->performAfterDelay(2s, [&] { run->press(); });
  };
  watch.earEnds = [&](simulation::TestRun&, bool) { isOver = true; };
  run = newTest(OutputPath::Audiometer, watch);
  run->startEar(false);
  ASSERT_TRUE(loop_->runUntil([&] { return isOver; })) << tones << " tones";
  loop_->runFor(300ms);

  const auto [left, right] = recording.channels();
  EXPECT_EQ(left, right);
  const Samples recorded = withoutSilenceAtItsStart(left), sent = withoutSilenceAtItsStart(noting->notes());
  constexpr std::size_t inFlight = 3 * 3840;  // what the end keeps back
  ASSERT_GT(sent.size(), 48000U + inFlight);
  const auto same = std::mismatch(sent.begin(), sent.end() - inFlight, recorded.begin(), recorded.end()).first;
  EXPECT_EQ(same - sent.begin(), sent.end() - inFlight - sent.begin()) << "samples came as they were sent";
  EXPECT_EQ(output_->lapses(), 0U);
}

ORN_ON_BOTH_SERVERS(ExactSound);

}  // namespace
}  // namespace orn
