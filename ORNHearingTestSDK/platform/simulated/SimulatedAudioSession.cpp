#include <ORNHearingTestSDK/platform/simulated/SimulatedAudioSession.h>

#include <utility>

#include <ORNHearingTestSDK/platform/AudioSessionObservers.h>
#include <ORNHearingTestSDK/platform/StereoGain.h>

namespace orn {

SimulatedAudioSession::SimulatedAudioSession() : observers_(std::make_unique<AudioSessionObservers>()) {}
SimulatedAudioSession::~SimulatedAudioSession() = default;

void SimulatedAudioSession::setRoute(AudioRouteDescription route, std::optional<std::string> text,
                                     std::int32_t reason) {
  route_ = std::move(route);
  text_ = std::move(text);
  observers_->tell(&AudioSessionObserver::routeChange, reason);
}

void SimulatedAudioSession::plugAudiometer(const std::string& name, const std::string& address) {
  setRoute({{}, {{name, address + "-tsco"}}}, "HeadsetBT", kNewDeviceAvailable);
}

void SimulatedAudioSession::plugEarphones() {
  setRoute({{}, {{"Headphones", "Wired Headphones"}}}, "Headphone", kNewDeviceAvailable);
}

void SimulatedAudioSession::unplug() {
  setRoute({{}, {{"Speaker", "Built-In Speaker"}}}, "Speaker", kAudioSessionRouteChangeReasonOldDeviceUnavailable);
}

void SimulatedAudioSession::interrupt(std::int32_t type) {
  observers_->tell(&AudioSessionObserver::interruption, type);
}

std::error_code SimulatedAudioSession::setActive(bool active) {
  active_ = active;
  return {};
}

std::error_code SimulatedAudioSession::setCategory(AudioSessionCategory category, std::uint32_t options) {
  category_ = category;
  options_ = options;
  ++timesConfigured_;
  return {};
}

std::error_code SimulatedAudioSession::setOutputVolume(float volume) {
  if (route_.outputs.empty()) return std::make_error_code(std::errc::no_such_device);
  volume_ = volumeInRange(volume);
  return {};
}

void SimulatedAudioSession::addObserver(std::weak_ptr<const AudioSessionObserver> observer) {
  observers_->add(std::move(observer));
}

}  // namespace orn
