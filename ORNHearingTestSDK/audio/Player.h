#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>

#include <ORNHearingTestSDK/platform/AudioQueue.h>

namespace orn {

/// Where Player gets its samples from.
class ORN_EXPORT PlayerGetDataSouce {
 public:
  virtual ~PlayerGetDataSouce() = default;

  /// The next block: 16-bit little-endian mono samples at 48000 Hz, at most kBlockBytes, valid until the next call.
  /// Where it is empty, the buffer is played as it was last. Called on the audio queue's thread, and by
  /// start() on the caller's; never on two threads at once. As on every audio thread nothing is allocated here, no file
  /// is touched, and no lock is waited for that another thread may hold for long.
  virtual std::span<const std::uint8_t> playerGetData() = 0;

 private:
  friend class Player;
  std::mutex criticalSection_;
};

/// The streaming output: three buffers circulate through one audio queue, each filled from the data source when it
/// comes back. Operations are for the main thread; what the queue answers to them is not passed on.
class ORN_EXPORT Player {
 public:
  /// The one player of the platform in force, made at its first use.
  static std::shared_ptr<Player> shareInstance();

  Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  /// Starts the queue, then fills and enqueues all three buffers, whatever their state. Set the data source first.
  void start();

  /// Starts the queue, or goes on after pause(). Harmless on a running queue.
  void play();

  /// Silences the queue; what is queued comes after the next play().
  void pause();

  /// Silences the queue at once and drops what is queued.
  void stop();

  /// Linear gain of the queue, 1 from the beginning.
  float volume() const { return volume_; }
  void setVolume(float volume);  ///< Gain of the whole stream, 0 to 1.

  /// The source is not owned: when it has gone, the buffers circulate with what they last held.
  std::weak_ptr<PlayerGetDataSouce> dataSouce() const;
  void setDataSouce(std::weak_ptr<PlayerGetDataSouce> dataSouce);  ///< Where the blocks come from; not owned.

  /// The format of the stream: 48000 Hz, 16 bit, mono.
  const AudioStreamBasicDescription& audioDescription() const { return audioDescription_; }

  /// Always null: blocks go from the source to the queue's own buffers.
  const std::uint8_t* pcmDataBuffer() const { return nullptr; }

  /// Least size of a buffer in bytes; read once, when the player is made.
  std::uint64_t bufferSize() const { return bufferSize_; }
  void setBufferSize(std::uint64_t bufferSize) { bufferSize_ = bufferSize; }

  /// Kept and without effect.
  std::int64_t numberOfLoops() const { return numberOfLoops_; }
  void setNumberOfLoops(std::int64_t numberOfLoops) { numberOfLoops_ = numberOfLoops; }

 private:
  void initAudio();
  void applyVolume();
  void readPCMAndPlay(AudioQueue& queue, AudioQueueBuffer& buffer);

  AudioStreamBasicDescription audioDescription_;
  std::array<AudioQueueBuffer*, 3> audioQueueBuffers_{};
  std::atomic<float> volume_ = 1.0F;
  mutable std::mutex dataSouceMutex_;
  std::mutex fillingMutex_;  // one block at a time, also when the source is replaced while a block is filled
  std::weak_ptr<PlayerGetDataSouce> dataSouce_;
  std::uint64_t bufferSize_ = 0;
  std::int64_t numberOfLoops_ = 0;
  std::unique_ptr<AudioQueue> audioQueue_;  // last: it goes first, and its callback needs the rest
};

}  // namespace orn
