#include <ORNHearingTestSDK/platform/linux/LinuxAudioPlayer.h>

#include <algorithm>
#include <utility>

namespace orn {
namespace {

constexpr std::uint32_t kFrameBytes = 4;
constexpr std::uint32_t kRequestBytes = kFrameBytes * 960;  // 20 ms
constexpr PulseStreamFormat kFormat{.channels = 2, .bufferBytes = 12 * kRequestBytes, .requestBytes = kRequestBytes};

}  // namespace

LinuxAudioPlayer::LinuxAudioPlayer(std::shared_ptr<SoundDevice> device, std::vector<std::int16_t> samples)
    : device_(std::move(device)), samples_(std::move(samples)), stream_(device_, kFormat, *this) {
  stereo_.reserve(kFormat.bufferBytes / sizeof(stereo_[0]));
}

LinuxAudioPlayer::~LinuxAudioPlayer() {
  const PulseLock lock(device_->connection());
  stream_.pause();
  stream_.close();
}

void LinuxAudioPlayer::setNumberOfLoops(int loops) {
  const PulseLock lock(device_->connection());
  loops_ = loops;
}

std::error_code LinuxAudioPlayer::prepareToPlay() {
  device_->chooseIfNone();
  const PulseLock lock(device_->connection());
  return stream_.open();
}

void LinuxAudioPlayer::setPan(float pan) {
  pan_ = pan;
  setGain();
}

void LinuxAudioPlayer::setVolume(float volume) {
  volume_ = volume;
  setGain();
}

void LinuxAudioPlayer::setGain() {
  const PulseLock lock(device_->connection());
  gain_ = StereoGain::of(pan_, volume_);
  if (!isPlaying_) return;
  goBackToWhatIsHeard();
  write();
}

std::error_code LinuxAudioPlayer::play() {
  device_->chooseIfNone();
  const PulseLock lock(device_->connection());
  if (samples_.empty()) return {};
  const bool isHeardOut = !stream_.isOpen() || stream_.room() >= stream_.bufferBytes();
  if (framesToPlay() == 0 && isHeardOut) frame_ = 0;
  isPlaying_ = true;
  return stream_.play();
}

void LinuxAudioPlayer::stop() {
  const PulseLock lock(device_->connection());
  isPlaying_ = false;
  stream_.pause();
  goBackToWhatIsHeard();
}

/// Drops what the server has not played yet; it is written again, with the gain of that time, at the next chance.
void LinuxAudioPlayer::goBackToWhatIsHeard() {
  if (!stream_.isOpen()) return;
  const std::size_t played = std::min<std::size_t>(stream_.room(), stream_.bufferBytes());
  frame_ -= std::min(static_cast<std::int64_t>((stream_.bufferBytes() - played) / kFrameBytes), inServer_);
  inServer_ = 0;
  stream_.drop();
}

void LinuxAudioPlayer::serverWantsSamples() {
  if (isPlaying_) write();
}

/// Frames from the next one to the last; without an end there are always enough.
std::int64_t LinuxAudioPlayer::framesToPlay() const {
  if (loops_ < 0) return kFormat.bufferBytes;
  return std::max<std::int64_t>(0, (std::int64_t{loops_} + 1) * static_cast<std::int64_t>(samples_.size()) - frame_);
}

void LinuxAudioPlayer::write() {
  const auto room = static_cast<std::int64_t>(stream_.room() / kFrameBytes);
  const std::int64_t frames = std::min({room, framesToPlay(), std::int64_t{kFormat.bufferBytes / kFrameBytes}});
  if (frames <= 0) return;
  stereo_.clear();
  for (std::int64_t i = 0; i < frames; ++i) {
    const std::int16_t sample = samples_[static_cast<std::size_t>(frame_ + i) % samples_.size()];
    stereo_.push_back(static_cast<std::int16_t>(scaledSample(sample, gain_.left)));
    stereo_.push_back(static_cast<std::int16_t>(scaledSample(sample, gain_.right)));
  }
  if (stream_.write(stereo_)) return;
  frame_ += frames;
  inServer_ += frames;
}

}  // namespace orn
