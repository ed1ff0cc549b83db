#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioQueue.h>

namespace orn {

/// The buffers of one queue, with what was enqueued of each. One thread at a time.
class ORN_EXPORT AudioQueueBuffers {
 public:
  /// One of them.
  struct Buffer : AudioQueueBuffer {
    std::vector<std::uint8_t> room;     ///< Its bytes, which mAudioData shows.
    std::vector<std::int16_t> samples;  ///< As they were at the last takeSamples().
    std::size_t played = 0;             ///< Samples of these; the queue counts on.

    /// Copies what is to be played, with nothing played of it yet. Does not allocate.
    void takeSamples();
  };

  /// A new buffer of that many bytes, zeroed; it lives as long as this object.
  Buffer& allocate(std::uint32_t byteSize);

  /// The buffer that may be enqueued; null if it holds no sample or belongs to another queue.
  Buffer* playable(const AudioQueueBuffer& buffer) const;

  std::size_t count() const { return buffers_.size(); }  ///< How many there are.

 private:
  std::vector<std::unique_ptr<Buffer>> buffers_;
};

}  // namespace orn
