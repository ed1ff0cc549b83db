#include <ORNHearingTestSDK/platform/linux/LinuxAudioQueue.h>

#include <algorithm>
#include <bit>
#include <utility>

#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/StereoGain.h>

namespace orn {
namespace {

static_assert(std::endian::native == std::endian::little, "samples go to the server as they stand");

constexpr PulseStreamFormat kQueueFormat{.channels = 1, .bufferBytes = 3 * kBlockBytes, .requestBytes = kBlockBytes};

}  // namespace

LinuxAudioQueue::LinuxAudioQueue(std::shared_ptr<SoundDevice> device, OutputCallback callback)
    : device_(std::move(device)),
      stream_(device_, kQueueFormat, *this),
      callbacks_([this, callback = std::move(callback)](AudioQueueBuffer& buffer) { callback(*this, buffer); }) {}

LinuxAudioQueue::~LinuxAudioQueue() {
  const PulseLock lock(device_->connection());
  isRunning_ = false;
  stream_.pause();
  stream_.close();
}

AudioQueueBuffer* LinuxAudioQueue::allocateBuffer(std::uint32_t byteSize) {
  const PulseLock lock(device_->connection());
  Buffer& made = buffers_.allocate(byteSize);
  for (Line* line : {&waiting_, &written_, &returned_}) line->reserve(buffers_.count());
  scaled_.reserve(std::max(scaled_.capacity(), made.samples.capacity()));
  callbacks_.reserve(buffers_.count());
  return &made;
}

std::error_code LinuxAudioQueue::enqueueBuffer(AudioQueueBuffer& buffer) {
  const PulseLock lock(device_->connection());
  Buffer* const enqueued = buffers_.playable(buffer);
  if (!enqueued) return std::make_error_code(std::errc::invalid_argument);
  withdraw(*enqueued);
  enqueued->takeSamples();
  waiting_.push_back(enqueued);
  // Whatever there is room for is written at once: the server itself asks for 80 ms at a time, and would run dry before
  // it asks where less than that is in flight.
  serverWantsSamples();
  return {};
}

/// Takes a buffer out of whichever line it stands in.
void LinuxAudioQueue::withdraw(Buffer& buffer) {
  if (std::find(written_.begin(), written_.end(), &buffer) != written_.end()) {
    // The server gives back all or nothing.
    stream_.drop();
    takeBackFromServer();
  }
  std::erase(waiting_, &buffer);
  std::erase(returned_, &buffer);
  callbacks_.forget(buffer);
}

/// What the server held is to be written again, before anything else.
void LinuxAudioQueue::takeBackFromServer() {
  waiting_.insert(waiting_.begin(), written_.begin(), written_.end());
  written_.clear();
}

std::error_code LinuxAudioQueue::setVolume(float volume) {
  const PulseLock lock(device_->connection());
  volume_ = volumeInRange(volume);
  return {};
}

std::error_code LinuxAudioQueue::start() {
  device_->chooseIfNone();
  const PulseLock lock(device_->connection());
  isRunning_ = true;
  callbacks_.setHeldBack(false);
  return stream_.play();
}

std::error_code LinuxAudioQueue::pause() {
  const PulseLock lock(device_->connection());
  isRunning_ = false;
  callbacks_.setHeldBack(true);
  return stream_.pause();
}

std::error_code LinuxAudioQueue::stop() {
  const PulseLock lock(device_->connection());
  isRunning_ = false;
  callbacks_.setHeldBack(true);
  callbacks_.forgetAll();
  const std::error_code paused = stream_.pause(), dropped = stream_.drop();
  for (Line* line : {&waiting_, &written_, &returned_}) line->clear();
  return paused ? paused : dropped;
}

void LinuxAudioQueue::serverWantsSamples() {
  write();
  if (isRunning_) handBackWhatIsPlayed();
}

void LinuxAudioQueue::write() {
  while (!waiting_.empty()) {
    Buffer& next = *waiting_.front();
    std::span<const std::int16_t> samples = next.samples;
    if (stream_.room() < samples.size_bytes()) return;
    if (volume_ != 1) {
      scaled_.resize(samples.size());
      std::transform(samples.begin(), samples.end(), scaled_.begin(),
                     [this](std::int16_t one) { return static_cast<std::int16_t>(scaledSample(one, volume_)); });
      samples = scaled_;
    }
    if (stream_.write(samples)) return;
    waiting_.erase(waiting_.begin());
    written_.push_back(&next);
  }
}

/// More room than the buffers that were handed back will fill again means that the oldest one was played, and a server
/// that holds nothing has played them all.
void LinuxAudioQueue::handBackWhatIsPlayed() {
  std::size_t away = 0;
  for (const Buffer* buffer : returned_) away += 2 * buffer->samples.size();
  const auto isPlayed = [&](const Buffer& oldest) {
    return stream_.room() >= std::min<std::size_t>(away + 2 * oldest.samples.size(), stream_.bufferBytes());
  };
  while (waiting_.empty() && !written_.empty() && isPlayed(*written_.front())) {
    Buffer& played = *written_.front();
    written_.erase(written_.begin());
    returned_.push_back(&played);
    away += 2 * played.samples.size();
    callbacks_.add(played);
  }
}

}  // namespace orn
