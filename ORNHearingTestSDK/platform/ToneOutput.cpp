#include <ORNHearingTestSDK/platform/ToneOutput.h>

#include <utility>

#include <ORNHearingTestSDK/platform/PlayableFormat.h>
#include <ORNHearingTestSDK/platform/WaveFile.h>

namespace orn {

std::unique_ptr<AudioQueue> ToneOutput::newOutputQueue(const AudioStreamBasicDescription& format,
                                                       AudioQueue::OutputCallback callback) {
  return isPlayable(format) ? newQueue(std::move(callback)) : nullptr;
}

std::unique_ptr<AudioPlayer> ToneOutput::playerWithData(std::span<const std::uint8_t> wavFile) {
  auto samples = samplesOfWaveFile(wavFile);
  return samples ? newPlayer(std::move(*samples)) : nullptr;
}

}  // namespace orn
