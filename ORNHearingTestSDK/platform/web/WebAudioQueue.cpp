#include <ORNHearingTestSDK/platform/web/WebAudioQueue.h>

#include <algorithm>
#include <utility>

#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn {

WebAudioQueue::WebAudioQueue(std::shared_ptr<WebOutputState> output, OutputCallback callback)
    : callback_(std::move(callback)),
      stream_(std::move(output), kSampleRate / 8, [this](std::size_t most) { return next(most); }) {
  stream_.onProgress = [this] { handBack(); };
}

WebAudioQueue::~WebAudioQueue() = default;

std::error_code WebAudioQueue::enqueueBuffer(AudioQueueBuffer& buffer) {
  Buffer* const own = buffers_.playable(buffer);
  if (!own) return std::make_error_code(std::errc::invalid_argument);
  std::erase(enqueued_, own);
  std::erase(taken_, own);
  own->takeSamples();
  enqueued_.push_back(own);
  stream_.feed();
  return {};
}

std::error_code WebAudioQueue::setVolume(float volume) {
  const float gain = volumeInRange(volume);
  stream_.setGain({gain, gain});
  return {};
}

std::error_code WebAudioQueue::pause() {
  stream_.pause();
  return {};
}

std::error_code WebAudioQueue::stop() {
  stream_.pause();
  stream_.clear();
  enqueued_.clear();
  taken_.clear();
  return {};
}

WebStream::Samples WebAudioQueue::next(std::size_t most) {
  if (enqueued_.empty()) return {};
  Buffer& buffer = *enqueued_.front();
  const auto left = std::span(buffer.samples).subspan(buffer.played);
  const auto samples = left.first(std::min(most, left.size()));
  buffer.played += samples.size();
  if (buffer.played == buffer.samples.size()) {
    enqueued_.pop_front();
    taken_.push_back(&buffer);
  }
  return {samples};
}

/// Never from within an operation: whoever enqueues may hold a lock that the callback takes.
void WebAudioQueue::handBack() {
  while (stream_.isPlaying() && !taken_.empty()) {
    Buffer& buffer = *taken_.front();
    taken_.pop_front();
    callback_(*this, buffer);
  }
}

}  // namespace orn
