#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioQueueBuffers.h>
#include <ORNHearingTestSDK/platform/linux/CallbackThread.h>
#include <ORNHearingTestSDK/platform/linux/PulseStream.h>

namespace orn {

/// A queue whose buffers are written to the sound server as it asks for them. A buffer is handed back when the server
/// has room for it as well as for those handed back before it, or holds nothing any more.
class LinuxAudioQueue final : public AudioQueue, private PulseStream::Writer {
 public:
  LinuxAudioQueue(std::shared_ptr<SoundDevice> device, OutputCallback callback);
  ~LinuxAudioQueue() override;

  AudioQueueBuffer* allocateBuffer(std::uint32_t byteSize) override;
  std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override;
  std::error_code setVolume(float volume) override;
  std::error_code start() override;
  std::error_code pause() override;
  std::error_code stop() override;

 private:
  using Buffer = AudioQueueBuffers::Buffer;
  using Line = std::vector<Buffer*>;

  void withdraw(Buffer& buffer);
  void takeBackFromServer();
  void write();
  void handBackWhatIsPlayed();

  void serverWantsSamples() override;
  bool isAtEnd() const override { return false; }
  void deviceWasLost() override { takeBackFromServer(); }

  std::shared_ptr<SoundDevice> device_;
  // All of these are guarded by the connection's lock.
  PulseStream stream_;
  AudioQueueBuffers buffers_;
  Line waiting_;   // enqueued, the next one first
  Line written_;   // with the server, the oldest first
  Line returned_;  // handed back and not enqueued again
  std::vector<std::int16_t> scaled_;
  float volume_ = 1;
  bool isRunning_ = false;
  CallbackThread callbacks_;  // last: it is destroyed first, and its callback needs the rest
};

}  // namespace orn
