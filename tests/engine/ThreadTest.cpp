#include <atomic>
#include <deque>
#include <thread>

#include <gmock/gmock.h>

#include "SessionScript.h"

namespace orn {
namespace {

/// Blocks that were pulled, and whether more are.
struct Tally {
  std::atomic<int> blocks = 0, wrongSizes = 0;
  std::atomic<bool> isPlaying = false;

  void waitForBlocks(int count) const {
    for (const int wanted = blocks + count; isPlaying && blocks < wanted;) std::this_thread::yield();
  }
};

/// Hands its buffers back in turn on a thread of its own, as fast as it can, while it plays.
class SpinningQueue final : public AudioQueue {
 public:
  SpinningQueue(OutputCallback callback, Tally& tally) : callback_(std::move(callback)), tally_(tally) {}
  ~SpinningQueue() override {
    isOver_ = true;
    if (thread_.joinable()) thread_.join();
  }

  AudioQueueBuffer* allocateBuffer(std::uint32_t byteSize) override {
    return &buffers_.emplace_back(AudioQueueBuffer{.mAudioData = rooms_.emplace_back(byteSize)});
  }
  std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override {
    if (buffer.mAudioDataByteSize != 7680) ++tally_.wrongSizes;
    return {};
  }
  std::error_code setVolume(float) override { return {}; }
  std::error_code start() override {
    tally_.isPlaying = true;
    if (!thread_.joinable()) thread_ = std::thread([this] { spin(); });
    return {};
  }
  std::error_code pause() override { return tally_.isPlaying = false, std::error_code(); }
  std::error_code stop() override { return pause(); }

 private:
  void spin() {
    for (std::size_t next = 0; !isOver_; std::this_thread::yield()) {
      if (!tally_.isPlaying) continue;
      callback_(*this, buffers_[next++ % buffers_.size()]);
      ++tally_.blocks;
    }
  }

  OutputCallback callback_;
  Tally& tally_;
  std::deque<std::vector<std::uint8_t>> rooms_;
  std::deque<AudioQueueBuffer> buffers_;
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

struct SpinningOutput final : AudioOutput {
  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription&,
                                             AudioQueue::OutputCallback callback) override {
    return std::make_unique<SpinningQueue>(std::move(callback), tally);
  }
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t>) override { return nullptr; }

  Tally tally;
};

TEST(AudioThread, MeetsEveryChangeAndOutlivesTheSessionThatItPulls) {
  const auto output = std::make_shared<SpinningOutput>();
  SessionScript test(SessionScript::Manual, SessionScript::Audiometer);
  Platform platform = test.machine.platform();
  platform.audioOutput = output;
  Platform::setCurrent(platform);
  test.session->startTest(false);
  for (int round = 0; round < 50; ++round) {
    for (const char* hz : {"1000hz", "125hz", "8000hz"}) test.session->playAtHz(hz, "60");
    output->tally.waitForBlocks(2);
    test.session->listened();
    test.session->pauseTest();
    test.session->continueTest();
    output->tally.waitForBlocks(2);
  }
  const std::weak_ptr<ORNManualHearingTest> life = test.session;
  test.session.reset();
  output->tally.waitForBlocks(5);
  EXPECT_TRUE(life.expired());
  EXPECT_GT(output->tally.blocks, 200);
  EXPECT_EQ(output->tally.wrongSizes, 0);
}

}  // namespace
}  // namespace orn
