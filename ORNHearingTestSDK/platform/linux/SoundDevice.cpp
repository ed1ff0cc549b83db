#include <ORNHearingTestSDK/platform/linux/SoundDevice.h>

#include <utility>

#include <ORNHearingTestSDK/platform/linux/PulseStream.h>

namespace orn {

SoundDevice::SoundDevice(std::shared_ptr<SoundServer> server) : server_(std::move(server)) {
  const PulseLock lock(connection());
  observer_ = server_->addObserver([this](const SoundServerState&) { silenceIfGone(); });
}

SoundDevice::~SoundDevice() {
  const PulseLock lock(connection());
  server_->removeObserver(observer_);
}

bool SoundDevice::chooseCurrent() {
  const SoundServerState state = server_->state();
  const SoundOutput* current = state.current();
  const PulseLock lock(connection());
  chosen_ = current ? std::optional(current->key) : std::nullopt;
  silenceIfGone();
  return current != nullptr;
}

void SoundDevice::chooseIfNone() {
  {
    const PulseLock lock(connection());
    if (chosen_) return;
  }
  chooseCurrent();
}

const SoundOutput* SoundDevice::present() const {
  return chosen_ && !isClosed_ ? server_->knownState().find(*chosen_) : nullptr;
}

std::error_code SoundDevice::status() const {
  if (!server_->connection().isAnswering()) return std::make_error_code(std::errc::timed_out);
  // Before a device is chosen nothing has sounded, and any output will do.
  const bool isThere = chosen_ ? present() != nullptr : !server_->isKnown() || server_->knownState().current();
  if (!isThere) return std::make_error_code(std::errc::no_such_device);
  for (const PulseStream* stream : streams_) {
    if (const std::error_code error = stream->status()) return error;
  }
  return lastStart_.error;
}

std::uint64_t SoundDevice::lapses() {
  for (PulseStream* stream : streams_) stream->lookForLapse();
  return lapses_;
}

void SoundDevice::silenced(const PulseStream& stream) {
  if (lastStart_.stream == &stream) lastStart_ = {};
}

void SoundDevice::close() {
  isClosed_ = true;
  silenceIfGone();
}

void SoundDevice::silenceIfGone() {
  const SoundOutput* device = present();
  // On a copy: a stream that loses its device leaves the list.
  for (PulseStream* stream : std::list(streams_)) {
    if (!device || stream->device() != device->key) stream->loseDevice();
  }
}

}  // namespace orn
