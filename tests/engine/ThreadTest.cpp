#include <atomic>
#include <deque>
#include <mutex>
#include <thread>

#include <gmock/gmock.h>

#include "SessionScript.h"

namespace orn {
namespace {

struct Tally {
  std::atomic<int> blocks = 0;
  std::atomic<int> wrongSizes = 0;
  std::atomic<bool> isPlaying = false;

  void waitForBlocks(int count) const {
    for (const int wanted = blocks + count; isPlaying && blocks < wanted;) std::this_thread::yield();
  }
};

/// Hands buffers back on a thread of its own, as fast as it can.
class SpinningQueue final : public AudioQueue {
 public:
  SpinningQueue(OutputCallback callback, std::shared_ptr<Tally> tally)
      : callback_(std::move(callback)), tally_(std::move(tally)), thread_([this] { spin(); }) {}
  ~SpinningQueue() override {
    isOver_ = true;
    thread_.join();
  }

  AudioQueueBuffer* allocateBuffer(std::uint32_t byteSize) override {
    auto& room = rooms_.emplace_back(byteSize);
    return &buffers_.emplace_back(AudioQueueBuffer{.mAudioData = room});
  }
  std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override {
    const std::lock_guard lock(mutex_);
    if (buffer.mAudioDataByteSize != 7680) ++tally_->wrongSizes;
    std::erase(enqueued_, &buffer);
    enqueued_.push_back(&buffer);
    return {};
  }
  std::error_code setVolume(float) override { return {}; }
  std::error_code start() override { return tally_->isPlaying = true, std::error_code(); }
  std::error_code pause() override { return tally_->isPlaying = false, std::error_code(); }
  std::error_code stop() override { return pause(); }

 private:
  AudioQueueBuffer* take() {
    const std::lock_guard lock(mutex_);
    if (!tally_->isPlaying || enqueued_.empty()) return nullptr;
    AudioQueueBuffer* buffer = enqueued_.front();
    enqueued_.pop_front();
    return buffer;
  }

  void spin() {
    while (!isOver_) {
      if (AudioQueueBuffer* buffer = take()) {
        callback_(*this, *buffer);
        ++tally_->blocks;
      } else {
        std::this_thread::yield();
      }
    }
  }

  OutputCallback callback_;
  std::shared_ptr<Tally> tally_;
  std::deque<std::vector<std::uint8_t>> rooms_;
  std::deque<AudioQueueBuffer> buffers_;
  std::mutex mutex_;
  std::deque<AudioQueueBuffer*> enqueued_;
  std::atomic<bool> isOver_ = false;
  std::thread thread_;  // last: it needs the rest
};

class SpinningOutput final : public AudioOutput {
 public:
  explicit SpinningOutput(std::shared_ptr<Tally> tally) : tally_(std::move(tally)) {}

  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription&,
                                             AudioQueue::OutputCallback callback) override {
    return std::make_unique<SpinningQueue>(std::move(callback), tally_);
  }
  std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string&) override { return nullptr; }
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t>) override { return nullptr; }

 private:
  std::shared_ptr<Tally> tally_;
};

struct Threaded : SessionScript {
  explicit Threaded(Type type) : SessionScript(type, Audiometer) {
    // In place of the simulated output.
    Platform platform = machine.platform();
    platform.audioOutput = std::make_shared<SpinningOutput>(tally);
    Platform::setCurrent(platform);
    onTone = [this](const std::string&, const std::string&, float) { tally->waitForBlocks(5); };
  }

  std::shared_ptr<Tally> tally = std::make_shared<Tally>();
};

std::vector<std::string> wholeTest(SessionScript& test) {
  test.session->setTestHzs({"1000hz", "125hz", "8000hz"});
  test.hearsFrom(35);
  for (const bool isLeft : {false, true}) {
    test.session->startTest(isLeft);
    test.run(400);
  }
  return test.takeTrace();
}

TEST(AudioThread, ChangesNothingInAWholeTest) {
  for (const auto type : {SessionScript::Auto, SessionScript::Standard}) {
    const auto wanted = [type] {
      SessionScript simulated(type, SessionScript::Audiometer);
      return wholeTest(simulated);
    }();
    ASSERT_THAT(wanted.back(), testing::HasSubstr("complete L"));
    Threaded threaded(type);
    EXPECT_EQ(wholeTest(threaded), wanted);
    EXPECT_GT(threaded.tally->blocks, 100);
    EXPECT_EQ(threaded.tally->wrongSizes, 0);
  }
}

TEST(AudioThread, OutlivesTheSessionThatItPulls) {
  Threaded test(SessionScript::Manual);
  test.session->startTest(false);
  for (int round = 0; round < 50; ++round) {
    for (const char* hz : {"1000hz", "125hz", "8000hz"}) test.session->playAtHz(hz, "60");
    test.session->listened();
    test.session->pauseTest();
    test.session->continueTest();
    test.tally->waitForBlocks(2);
  }
  const std::weak_ptr<ORNManualHearingTest> life = test.session;
  test.session.reset();
  test.tally->waitForBlocks(5);
  EXPECT_TRUE(life.expired());
  EXPECT_EQ(test.tally->wrongSizes, 0);
}

}  // namespace
}  // namespace orn
