#include <ORNHearingTestSDK/audio/Player.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/PerPlatform.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/PlayableFormat.h>

namespace orn {

std::shared_ptr<Player> Player::shareInstance() {
  static PerPlatform<Player> instance;
  return instance.get([] { return std::make_shared<Player>(); });
}

Player::Player() { initAudio(); }

void Player::initAudio() {
  audioDescription_ = kToneFormat;
  audioQueue_ = Platform::current().audioOutput->newOutputQueue(
      audioDescription_, [this](AudioQueue& queue, AudioQueueBuffer& buffer) { readPCMAndPlay(queue, buffer); });
  if (!audioQueue_) return;
  setVolume(1.0F);
  const auto size = static_cast<std::uint32_t>(std::max<std::uint64_t>(bufferSize_, kBlockBytes));
  for (AudioQueueBuffer*& buffer : audioQueueBuffers_) buffer = audioQueue_->allocateBuffer(size);
}

void Player::setVolume(float volume) {
  volume_ = volume;
  applyVolume();
}

void Player::applyVolume() {
  if (audioQueue_) audioQueue_->setVolume(volume_);
}

void Player::start() {
  play();
  if (!audioQueue_) return;
  for (AudioQueueBuffer* buffer : audioQueueBuffers_) {
    if (buffer) readPCMAndPlay(*audioQueue_, *buffer);
  }
}

void Player::play() {
  applyVolume();
  if (audioQueue_) audioQueue_->start();
}

void Player::pause() {
  if (audioQueue_) audioQueue_->pause();
}

void Player::stop() {
  if (audioQueue_) audioQueue_->stop();
}

std::weak_ptr<PlayerGetDataSouce> Player::dataSouce() const {
  const std::lock_guard lock(dataSouceMutex_);
  return dataSouce_;
}

void Player::setDataSouce(std::weak_ptr<PlayerGetDataSouce> dataSouce) {
  const std::lock_guard lock(dataSouceMutex_);
  dataSouce_ = std::move(dataSouce);
}

void Player::readPCMAndPlay(AudioQueue& queue, AudioQueueBuffer& buffer) {
  const auto source = dataSouce().lock();
  if (!source) {
    queue.enqueueBuffer(buffer);
    return;
  }
  const std::lock_guard lock(source->criticalSection_);
  const std::lock_guard filling(fillingMutex_);
  if (const auto block = source->playerGetData(); !block.empty()) {
    queue.setVolume(volume_);
    // The declared size is the block's own, even where the copy is cut: no source gives more than a block.
    buffer.mAudioDataByteSize = static_cast<std::uint32_t>(block.size());
    std::memcpy(buffer.mAudioData.data(), block.data(), std::min<std::size_t>(block.size(), kBlockBytes));
  }
  queue.enqueueBuffer(buffer);
}

}  // namespace orn
