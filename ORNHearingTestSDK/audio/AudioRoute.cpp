#include <ORNHearingTestSDK/audio/AudioRoute.h>

#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/Device.h>
#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {
namespace {

void configureFor(AudioSessionCategory category) {
  AudioSession& session = *Platform::current().audioSession;
  session.setActive(true);
  session.setCategory(category, kAudioSessionCategoryOptionAllowBluetooth);
}

[[gnu::constructor]] void whenLibraryIsLoaded() { AudioRoute::load(); }

bool holds(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

}  // namespace

void AudioRoute::load() { Platform::whenInForce(&AudioRoute::config); }

void AudioRoute::config() { configAudioSession(); }

void AudioRoute::configAudioSession() { configureFor(AudioSessionCategory::Playback); }

void AudioRoute::configAudioSessionToPlayAndRecord() { configureFor(AudioSessionCategory::PlayAndRecord); }

bool AudioRoute::hasHeadset() {
  const auto route = Platform::current().audioSession->routeText();
  // "HeadphonesBT" and "HeadsetBT" contain these, and need no search of their own.
  return route && (holds(*route, "Headphone") || holds(*route, "Headset"));
}

std::optional<std::string> AudioRoute::getKV50Mac() {
  constexpr std::size_t addressLength = 17;
  std::optional<std::string> address;
  for (const AudioPort& port : Platform::current().audioSession->currentRoute().outputs) {
    const bool isAudiometer = holds(port.portName, "KV50") || holds(port.portName, "KV60");
    if (isAudiometer && port.UID.size() > addressLength) address = port.UID.substr(0, addressLength);
  }
  return address;
}

std::string AudioRoute::platform() { return Platform::current().device->machine(); }

}  // namespace orn
