#include <ORNHearingTestSDK/platform/linux/LinuxAudioOutput.h>

#include <utility>

#include <ORNHearingTestSDK/platform/linux/LinuxAudioPlayer.h>
#include <ORNHearingTestSDK/platform/linux/LinuxAudioQueue.h>

namespace orn {

LinuxAudioOutput::LinuxAudioOutput(std::shared_ptr<SoundServer> server)
    : device_(std::make_shared<SoundDevice>(std::move(server))) {}

LinuxAudioOutput::~LinuxAudioOutput() {
  const PulseLock lock(device_->connection());
  device_->close();
}

std::error_code LinuxAudioOutput::useCurrentDevice() {
  if (device_->chooseCurrent()) return {};
  const PulseLock lock(device_->connection());
  return device_->connection().absence();
}

std::error_code LinuxAudioOutput::status() {
  const PulseLock lock(device_->connection());
  return device_->status();
}

std::uint64_t LinuxAudioOutput::lapses() {
  const PulseLock lock(device_->connection());
  return device_->lapses();
}

std::unique_ptr<AudioQueue> LinuxAudioOutput::newQueue(AudioQueue::OutputCallback callback) {
  return std::make_unique<LinuxAudioQueue>(device_, std::move(callback));
}

std::unique_ptr<AudioPlayer> LinuxAudioOutput::newPlayer(std::vector<std::int16_t> samples) {
  return std::make_unique<LinuxAudioPlayer>(device_, std::move(samples));
}

}  // namespace orn
