#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <ORNHearingTestSDK/contracts/AudioUnderTest.h>
#include <ORNHearingTestSDK/contracts/Checking.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn::contract {

using namespace std::chrono_literals;
using Samples = std::vector<std::int16_t>;
using Bytes = std::vector<std::uint8_t>;

/// The format that queues play.
AudioStreamBasicDescription toneFormat();

/// Samples that tell their own place: 100, 101 and so on; none of them is 0.
Samples ramp(std::size_t count, std::int16_t first = 100);
Samples constant(std::size_t count, std::int16_t value);

/// Samples as a WAV file.
Bytes waveFile(const Samples& samples);

/// A new queue, with notes of its callbacks.
class QueueUnderTest {
 public:
  static constexpr std::size_t kBlock = kBlockSamples;
  using Refill = std::function<void(AudioQueue&, AudioQueueBuffer&)>;

  /// The refill is called from within each callback.
  explicit QueueUnderTest(AudioOutput& output, Refill refill = {});
  ~QueueUnderTest();
  QueueUnderTest(const QueueUnderTest&) = delete;
  QueueUnderTest& operator=(const QueueUnderTest&) = delete;

  AudioQueue* operator->() { return queue_.get(); }
  AudioQueue& operator*() { return *queue_; }

  AudioQueueBuffer& newBuffer(std::size_t frames);
  static void fill(AudioQueueBuffer& buffer, const Samples& samples);

  /// Enqueues those samples, in a new buffer or in as many blocks as they need.
  AudioQueueBuffer& enqueue(const Samples& samples);
  std::vector<AudioQueueBuffer*> enqueueBlocks(const Samples& samples);

  void start();
  void destroy() { queue_.reset(); }

  /// What was handed back, in order, and on how many threads.
  std::vector<AudioQueueBuffer*> handedBack() const;
  std::size_t threads() const;

 private:
  struct Notes {
    std::mutex mutex;
    std::vector<AudioQueueBuffer*> handedBack;
    std::set<std::thread::id> threads;
  };

  std::shared_ptr<Notes> notes_ = std::make_shared<Notes>();
  std::unique_ptr<AudioQueue> queue_;
};

/// An output under test, and what is heard of it. Devices and sound servers play late and put silence before and after
/// a sound; a sample may differ by one from what was sent if a gain was applied to it.
class AudioCheck {
 public:
  explicit AudioCheck(AudioUnderTest audio) : audio_(std::move(audio)) {}

  AudioOutput& output() { return *audio_.output; }
  std::unique_ptr<AudioPlayer> newPlayer(const Samples& samples, int loops = -1);
  std::size_t framesHeldBack() const { return audio_.framesHeldBack; }
  void dropOutput() { audio_.output.reset(); }
  void takeDeviceAway();
  void bringDeviceBack();

  /// Lets time pass, and listens if there is a hook for that.
  void runFor(std::chrono::nanoseconds span);

  /// Runs until something holds, at most for a few seconds.
  bool runUntil(const std::function<bool()>& holds);

  /// Forgets what was heard.
  void forget();

  /// What was heard in a channel, 0 left and 1 right, since it was last forgotten.
  const Samples& heard(std::size_t channel) const;

  /// The same without silence, wherever that was.
  Samples sound(std::size_t channel = 0) const;

  /// Runs until as many frames have sounded, and on for a while; expects exactly those samples in both channels, except
  /// what is held back. Silence may come before and after them, and with gaps between them too.
  void expectSound(const Samples& samples, bool withGaps = false);

  /// Runs until that many frames have sounded.
  void expectFrames(std::size_t frames);

  /// Runs for a few seconds at most, and expects that nothing is heard any more in the end.
  void expectItFallsSilent(const std::string& after);

  /// Expects that nothing at all is heard in the next while.
  void expectSilence(const std::string& when);

  /// Expects that each channel soon holds one value.
  void expectSteady(double left, double right, const std::string& when);

 private:
  void listen();
  bool isSteady(std::size_t channel, double value) const;

  AudioUnderTest audio_;
  Samples channels_[2];
};

}  // namespace orn::contract
