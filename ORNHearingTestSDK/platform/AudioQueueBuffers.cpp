#include <ORNHearingTestSDK/platform/AudioQueueBuffers.h>

#include <algorithm>

namespace orn {
namespace {

std::size_t samplesIn(const AudioQueueBuffer& buffer) {
  return std::min<std::size_t>(buffer.mAudioDataByteSize, buffer.mAudioData.size()) / 2;
}

}  // namespace

void AudioQueueBuffers::Buffer::takeSamples() {
  samples.resize(samplesIn(*this));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    samples[i] = static_cast<std::int16_t>(mAudioData[2 * i] | mAudioData[2 * i + 1] << 8);
  }
  played = 0;
}

AudioQueueBuffers::Buffer& AudioQueueBuffers::allocate(std::uint32_t byteSize) {
  auto buffer = std::make_unique<Buffer>();
  buffer->room.resize(byteSize);
  buffer->samples.reserve(byteSize / 2);
  buffer->mAudioData = buffer->room;
  return *buffers_.emplace_back(std::move(buffer));
}

AudioQueueBuffers::Buffer* AudioQueueBuffers::playable(const AudioQueueBuffer& buffer) const {
  const auto one =
      std::find_if(buffers_.begin(), buffers_.end(), [&](const auto& own) { return own.get() == &buffer; });
  return one == buffers_.end() || samplesIn(buffer) == 0 ? nullptr : one->get();
}

}  // namespace orn
