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

void SoundDevice::close() {
  isClosed_ = true;
  silenceIfGone();
}

void SoundDevice::silenceIfGone() {
  const SoundOutput* device = present();
  // A copy: a stream that loses its device leaves the list.
  for (PulseStream* stream : std::list(streams_)) {
    if (!device || stream->device() != device->key) stream->loseDevice();
  }
}

}  // namespace orn
