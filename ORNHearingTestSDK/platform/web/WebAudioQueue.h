#pragma once

#include <deque>
#include <memory>

#include <ORNHearingTestSDK/platform/AudioQueueBuffers.h>
#include <ORNHearingTestSDK/platform/web/WebStream.h>

namespace orn {

/// A queue whose buffers come back when the audio thread has all of them, up to an eighth of a second before they have
/// been heard. Callbacks come from the page's event loop.
class WebAudioQueue final : public AudioQueue {
 public:
  WebAudioQueue(std::shared_ptr<WebOutputState> output, OutputCallback callback);
  ~WebAudioQueue() override;

  AudioQueueBuffer* allocateBuffer(std::uint32_t byteSize) override { return &buffers_.allocate(byteSize); }
  std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override;
  std::error_code setVolume(float volume) override;
  std::error_code start() override { return stream_.play(); }
  std::error_code pause() override;
  std::error_code stop() override;

 private:
  using Buffer = AudioQueueBuffers::Buffer;

  WebStream::Samples next(std::size_t most);
  void handBack();

  OutputCallback callback_;
  AudioQueueBuffers buffers_;
  std::deque<Buffer*> enqueued_, taken_;
  WebStream stream_;
};

}  // namespace orn
