#include <ORNHearingTestSDK/platform/web/WebAudioSession.h>

#include <utility>

namespace orn {

WebAudioSession::WebAudioSession()
    : soundObserver_(std::make_shared<const WebSoundObserver>([this](bool isAvailable) {
        observers_.tell(&AudioSessionObserver::routeChange,
                        isAvailable ? kNewDeviceAvailable : kAudioSessionRouteChangeReasonOldDeviceUnavailable);
      })) {
  observeWebSound(soundObserver_);
}

std::error_code WebAudioSession::setActive(bool /*active*/) { return {}; }

std::error_code WebAudioSession::setCategory(AudioSessionCategory /*category*/, std::uint32_t /*options*/) {
  return {};
}

std::optional<std::string> WebAudioSession::routeText() const {
  if (webSoundStatus()) return std::nullopt;
  return "Browser";
}

AudioRouteDescription WebAudioSession::currentRoute() const {
  if (webSoundStatus()) return {};
  return {{}, {{"Browser", "browser"}}};
}

std::error_code WebAudioSession::setOutputVolume(float /*volume*/) {
  if (const auto missing = webSoundStatus()) return missing;
  return std::make_error_code(std::errc::not_supported);
}

void WebAudioSession::addObserver(std::weak_ptr<const AudioSessionObserver> observer) {
  observers_.add(std::move(observer));
}

}  // namespace orn
