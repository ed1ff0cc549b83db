#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/linux/SoundDevice.h>

namespace orn {

/// Output through the user's sound server.
class LinuxAudioOutput final : public AudioOutput {
 public:
  explicit LinuxAudioOutput(std::shared_ptr<SoundServer> server);
  ~LinuxAudioOutput() override;

  std::error_code useCurrentDevice() override;
  std::error_code status() override;
  std::uint64_t lapses() override;
  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription& format,
                                             AudioQueue::OutputCallback callback) override;
  std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string& path) override;
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t> wavFile) override;

 private:
  std::shared_ptr<SoundDevice> device_;
};

}  // namespace orn
