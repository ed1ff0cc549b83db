#include <ORNHearingTestSDK/platform/linux/LinuxAudioPlayer.h>

#include <algorithm>
#include <utility>

#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn {
namespace {

constexpr std::uint32_t kFrameBytes = 4;
constexpr std::uint32_t kRequestBytes = kFrameBytes * kSampleRate / 50;  // 20 ms
constexpr PulseStreamFormat kPlayerFormat{
    .channels = 2, .bufferBytes = 12 * kRequestBytes, .requestBytes = kRequestBytes};

}  // namespace

LinuxAudioPlayer::LinuxAudioPlayer(std::shared_ptr<SoundDevice> device, std::vector<std::int16_t> samples)
    : device_(std::move(device)), stream_(device_, kPlayerFormat, *this), recording_(std::move(samples)) {
  stereo_.reserve(kPlayerFormat.bufferBytes / sizeof(stereo_[0]));
}

LinuxAudioPlayer::~LinuxAudioPlayer() {
  const PulseLock lock(device_->connection());
  stream_.pause();
  stream_.close();
}

void LinuxAudioPlayer::setNumberOfLoops(int loops) {
  const PulseLock lock(device_->connection());
  recording_.setNumberOfLoops(loops);
}

std::error_code LinuxAudioPlayer::prepareToPlay() {
  device_->chooseIfNone();
  const PulseLock lock(device_->connection());
  return stream_.open();
}

void LinuxAudioPlayer::setGain(StereoGain gain) {
  const PulseLock lock(device_->connection());
  gain_ = gain;
  if (!isPlaying_) return;
  goBackToWhatIsHeard();
  write();
}

std::error_code LinuxAudioPlayer::play() {
  device_->chooseIfNone();
  const PulseLock lock(device_->connection());
  if (recording_.isEmpty()) return {};
  const bool isHeardOut = !stream_.isOpen() || stream_.room() >= stream_.bufferBytes();
  if (recording_.left() == 0 && isHeardOut) recording_.rewind();
  isPlaying_ = true;
  return stream_.play();
}

void LinuxAudioPlayer::stop() {
  const PulseLock lock(device_->connection());
  isPlaying_ = false;
  stream_.pause();
  goBackToWhatIsHeard();
}

/// Drops what the server has not played yet; it is written again at the next request, with the gain of that time.
void LinuxAudioPlayer::goBackToWhatIsHeard() {
  if (!stream_.isOpen()) return;
  const std::size_t played = std::min<std::size_t>(stream_.room(), stream_.bufferBytes());
  recording_.move(-std::min(static_cast<std::int64_t>((stream_.bufferBytes() - played) / kFrameBytes), inServer_));
  inServer_ = 0;
  stream_.drop();
}

void LinuxAudioPlayer::serverWantsSamples() {
  if (isPlaying_) write();
}

void LinuxAudioPlayer::write() {
  const auto room = std::min<std::int64_t>(stream_.room(), kPlayerFormat.bufferBytes) / kFrameBytes;
  std::int64_t frames = 0;
  stereo_.clear();
  while (frames < room && recording_.left() > 0) {
    const auto samples = recording_.next(room - frames);
    for (const std::int16_t sample : samples) {
      stereo_.push_back(static_cast<std::int16_t>(scaledSample(sample, gain_.left)));
      stereo_.push_back(static_cast<std::int16_t>(scaledSample(sample, gain_.right)));
    }
    recording_.move(static_cast<std::int64_t>(samples.size()));
    frames += static_cast<std::int64_t>(samples.size());
  }
  if (frames == 0) return;
  if (stream_.write(stereo_)) {
    recording_.move(-frames);
  } else {
    inServer_ += frames;
  }
}

}  // namespace orn
