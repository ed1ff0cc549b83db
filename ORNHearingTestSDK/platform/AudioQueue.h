#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <system_error>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Format of a stream of linear PCM samples.
struct AudioStreamBasicDescription {
  double mSampleRate = 0;               ///< Frames per second.
  std::uint32_t mFormatID = 0;          ///< kAudioFormatLinearPCM.
  std::uint32_t mFormatFlags = 0;       ///< kLinearPCMFormatFlag... added up.
  std::uint32_t mBytesPerPacket = 0;    ///< 2 here.
  std::uint32_t mFramesPerPacket = 0;   ///< 1 here.
  std::uint32_t mBytesPerFrame = 0;     ///< 2 here.
  std::uint32_t mChannelsPerFrame = 0;  ///< 1 here.
  std::uint32_t mBitsPerChannel = 0;    ///< 16 here.
  std::uint32_t mReserved = 0;          ///< 0.
};

inline constexpr std::uint32_t kAudioFormatLinearPCM = 0x6C70636D;  // "lpcm"
inline constexpr std::uint32_t kLinearPCMFormatFlagIsSignedInteger = 4;
inline constexpr std::uint32_t kLinearPCMFormatFlagIsPacked = 8;

/// One buffer that circulates between a queue and whoever fills it. Owned by the queue.
struct AudioQueueBuffer {
  std::span<std::uint8_t> mAudioData;    ///< The buffer's whole room.
  std::uint32_t mAudioDataByteSize = 0;  ///< How much of it is to be played; a queue plays no more than the room.
};

/// Streaming output of one sound: buffers are enqueued, played in order, and handed back one by one, each once for each
/// time it was enqueued. The stream is mono and sounds on the left and on the right alike, every sample as it is times
/// the volume. A buffer that its callback enqueues follows the others without a gap.
///
/// A queue that runs dry plays silence and goes on when a buffer is enqueued. It never moves to another output by
/// itself: if its device goes, it falls silent, and what was queued comes after a start() with the device back.
/// Operations may be called from the main thread and, enqueueBuffer() and setVolume() only, from within the callback.
/// The destructor waits for a running callback, after which none comes, and drops what is queued.
class ORN_EXPORT AudioQueue {
 public:
  /// Called on the queue's own thread, always the same one, with a buffer that has been played. In a simulated queue
  /// that thread is the one that runs the loop. It has some 80 ms until the sound runs dry, so it allocates nothing,
  /// reads and writes no file, and waits for no lock that another thread may hold for long.
  using OutputCallback = std::function<void(AudioQueue&, AudioQueueBuffer&)>;

  virtual ~AudioQueue() = default;

  /// A new buffer of that many bytes, zeroed, or null if there is no memory. It lives as long as the queue.
  virtual AudioQueueBuffer* allocateBuffer(std::uint32_t byteSize) = 0;

  /// Hands a filled buffer over for playing; its bytes are copied before this returns. A buffer that is already
  /// enqueued gives up its place: its new contents are played last. std::errc::invalid_argument for a buffer without
  /// bytes or of another queue, which is not enqueued.
  virtual std::error_code enqueueBuffer(AudioQueueBuffer& buffer) = 0;

  /// Linear gain of the whole queue, 0 to 1 and at first 1; beyond that the nearer end counts, and NaN is silence. It
  /// counts at the latest for what is enqueued from now on.
  virtual std::error_code setVolume(float volume) = 0;

  /// Starts playing, or goes on after pause(). Harmless on a running queue.
  virtual std::error_code start() = 0;

  /// Stops the sound and keeps what is queued, to go on with the very next sample; no callback comes until start(), but
  /// one that is running may end.
  virtual std::error_code pause() = 0;

  /// Stops the sound and drops what is queued without handing it back.
  virtual std::error_code stop() = 0;
};

}  // namespace orn
