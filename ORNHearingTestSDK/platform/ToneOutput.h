#pragma once

#include <vector>

#include <ORNHearingTestSDK/platform/AudioOutput.h>

namespace orn {

/// An output that looks at formats and reads recordings here; what remains for a backend are queues and players of
/// samples, 16-bit mono at 48000 Hz.
class ORN_EXPORT ToneOutput : public AudioOutput {
 public:
  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                             AudioQueue::OutputCallback callback) final;
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> wavFile) final;

 protected:
  virtual std::unique_ptr<AudioQueue> newQueue(AudioQueue::OutputCallback callback) = 0;  ///< A queue of such samples.
  virtual std::unique_ptr<AudioPlayer> newPlayer(std::vector<std::int16_t> samples) = 0;  ///< A player of such samples.
};

}  // namespace orn
