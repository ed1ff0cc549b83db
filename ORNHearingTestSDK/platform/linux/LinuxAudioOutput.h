#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/ToneOutput.h>
#include <ORNHearingTestSDK/platform/linux/SoundDevice.h>

namespace orn {

/// Output through the user's sound server.
class LinuxAudioOutput final : public ToneOutput {
 public:
  explicit LinuxAudioOutput(std::shared_ptr<SoundServer> server);
  ~LinuxAudioOutput() override;

  std::error_code useCurrentDevice() override;
  std::error_code status() override;
  std::uint64_t lapses() override;

 private:
  std::unique_ptr<AudioQueue> newQueue(AudioQueue::OutputCallback callback) override;
  std::unique_ptr<AudioPlayer> newPlayer(std::vector<std::int16_t> samples) override;

  std::shared_ptr<SoundDevice> device_;
};

}  // namespace orn
