#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioOutput.h>

#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioPlayer.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioQueue.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedMixer.h>

namespace orn {
SimulatedAudioOutput::SimulatedAudioOutput(std::shared_ptr<RunLoop> runLoop)
    : mixer_(std::make_shared<SimulatedMixer>(runLoop)) {
  const std::weak_ptr<SimulatedMixer> mixer = mixer_;
  deviceClock_ = runLoop->scheduledTimer(kBlockTime, [mixer] {
    if (const auto alive = mixer.lock()) alive->catchUp();
  });
}

SimulatedAudioOutput::~SimulatedAudioOutput() {
  deviceClock_->invalidate();
  mixer_->close();
}

void SimulatedAudioOutput::addListener(Listener listener) { mixer_->addListener(std::move(listener)); }

void SimulatedAudioOutput::keepSamples() {
  mixer_->catchUp();
  addListener([kept = kept_](std::int64_t, std::span<const std::int16_t> samples) {
    kept->insert(kept->end(), samples.begin(), samples.end());
  });
}

const std::vector<std::int16_t>& SimulatedAudioOutput::keptSamples() const {
  mixer_->catchUp();
  return *kept_;
}

void SimulatedAudioOutput::setDevicePresent(bool isPresent) { mixer_->setDevicePresent(isPresent); }

void SimulatedAudioOutput::setHeldBack(bool isHeldBack) { mixer_->setHeldBack(isHeldBack); }

std::error_code SimulatedAudioOutput::status() { return mixer_->status(); }

/// Counts as far as the output has been rendered: rendering more here would make callbacks from within a query.
std::uint64_t SimulatedAudioOutput::lapses() { return mixer_->lapses(); }

std::error_code SimulatedAudioOutput::useCurrentDevice() { return mixer_->device(); }

std::unique_ptr<AudioQueue> SimulatedAudioOutput::newQueue(AudioQueue::OutputCallback callback) {
  return std::make_unique<SimulatedAudioQueue>(mixer_, std::move(callback));
}

std::unique_ptr<AudioPlayer> SimulatedAudioOutput::newPlayer(std::vector<std::int16_t> samples) {
  return std::make_unique<SimulatedAudioPlayer>(mixer_, std::move(samples));
}

}  // namespace orn
