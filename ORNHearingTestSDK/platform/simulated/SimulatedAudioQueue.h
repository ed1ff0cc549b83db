#pragma once

#include <deque>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/platform/AudioQueue.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedMixer.h>

namespace orn {

/// A queue whose buffers are played as the mixer asks for frames; a buffer's callback comes at its last frame,
/// or with the next frames where an operation of the queue's own has played it to its end. None comes while it does not
/// play.
class SimulatedAudioQueue final : public AudioQueue, private SimulatedMixer::Source {
 public:
  SimulatedAudioQueue(std::shared_ptr<SimulatedMixer> mixer, OutputCallback callback);
  ~SimulatedAudioQueue() override;

  AudioQueueBuffer* allocateBuffer(std::uint32_t byteSize) override;
  std::error_code enqueueBuffer(AudioQueueBuffer& buffer) override;
  std::error_code setVolume(float volume) override;
  std::error_code start() override;
  std::error_code pause() override;
  std::error_code stop() override;

 private:
  struct Buffer : AudioQueueBuffer {
    std::vector<std::uint8_t> room;
    std::vector<std::int16_t> samples;
    std::size_t played = 0;
  };

  void mixInto(SimulatedMixer::Sums sums) override;
  void fallSilent() override { setSilent(); }
  bool isSounding() const override { return playing_ && !enqueued_.empty(); }
  void setSilent();
  void catchUpWithoutCallbacks();
  void giveBackEnded();

  std::shared_ptr<SimulatedMixer> mixer_;
  OutputCallback callback_;
  std::vector<std::unique_ptr<Buffer>> buffers_;
  std::deque<Buffer*> enqueued_, ended_;
  float volume_ = 1;
  bool playing_ = false;
  bool hasPlayed_ = false;  // since it was started or last ran dry
  bool holdsCallbacks_ = false;
  bool isBeingPaused_ = false;
};

}  // namespace orn
