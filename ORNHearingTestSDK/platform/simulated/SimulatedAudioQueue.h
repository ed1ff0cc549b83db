#pragma once

#include <deque>
#include <memory>

#include <ORNHearingTestSDK/platform/AudioQueueBuffers.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedMixer.h>

namespace orn {

/// A queue whose buffers are played as the mixer asks for frames; a buffer's callback comes at its last frame, or with
/// the next frames where one of the queue's own operations has played it to its end. No callback comes while the queue
/// does not play.
class SimulatedAudioQueue final : public AudioQueue, private SimulatedMixer::Source {
 public:
  SimulatedAudioQueue(std::shared_ptr<SimulatedMixer> mixer, OutputCallback callback);
  ~SimulatedAudioQueue() override;

  AudioQueueBuffer* allocateBuffer(std::uint32_t byteSize) override { return &buffers_.allocate(byteSize); }
  std::error_code setVolume(float volume) override;
  std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override;
  std::error_code start() override;
  std::error_code stop() override;
  std::error_code pause() override;

 private:
  using Buffer = AudioQueueBuffers::Buffer;

  void mixInto(SimulatedMixer::Sums sums) override;
  void fallSilent() override { setSilent(); }
  bool isSounding() const override { return playing_ && !enqueued_.empty(); }
  void setSilent();
  void catchUpWithoutCallbacks();
  void giveBackEnded();

  std::shared_ptr<SimulatedMixer> mixer_;
  OutputCallback callback_;
  AudioQueueBuffers buffers_;
  std::deque<Buffer*> enqueued_, ended_;
  float volume_ = 1;
  bool playing_ = false;
  bool hasPlayed_ = false;  // since it was started or last ran dry
  bool holdsCallbacks_ = false;
  bool isBeingPaused_ = false;
};

}  // namespace orn
