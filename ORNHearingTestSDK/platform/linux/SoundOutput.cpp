#include <ORNHearingTestSDK/platform/linux/SoundOutput.h>

#include <algorithm>
#include <cctype>
#include <string_view>

#include <ORNHearingTestSDK/platform/linux/LibPulse.h>

namespace orn {
namespace {

/// The servers' stand-in for no device at all.
constexpr std::string_view kNoDevice = "auto_null";

std::string textOf(const char* text) { return text ? text : ""; }

/// Six pairs of hexadecimal digits with colons between.
bool isDeviceAddress(std::string_view text) {
  if (text.size() != 17) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto letter = static_cast<unsigned char>(text[i]);
    if (i % 3 == 2 ? letter != ':' : std::isxdigit(letter) == 0) return false;
  }
  return true;
}

/// PulseAudio and PipeWire keep it in different properties.
std::string addressOf(const pa_proplist* properties) {
  for (const char* key : {"api.bluez5.address", PA_PROP_DEVICE_STRING}) {
    const std::string text = textOf(libpulse().pa_proplist_gets(properties, key));
    if (isDeviceAddress(text)) return text;
  }
  return {};
}

/// The kind of earphone that a port or a form factor of that name is; empty if it is none.
std::string earKindOf(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), [](unsigned char one) { return std::tolower(one); });
  if (name.find("headphone") != std::string::npos) return "Headphone";
  if (name.find("headset") != std::string::npos) return "Headset";
  return {};
}

std::string kindOf(const pa_sink_info& sink) {
  if (const pa_sink_port_info* port = sink.active_port) {
    if (port->type == PA_DEVICE_PORT_TYPE_HEADPHONES) return "Headphone";
    if (port->type == PA_DEVICE_PORT_TYPE_HEADSET) return "Headset";
    if (const std::string kind = earKindOf(textOf(port->name)); !kind.empty()) return kind;
  }
  const std::string formFactor = textOf(libpulse().pa_proplist_gets(sink.proplist, PA_PROP_DEVICE_FORM_FACTOR));
  if (const std::string kind = earKindOf(formFactor); !kind.empty()) return kind;
  return "Speaker";
}

}  // namespace

SoundOutput SoundOutput::of(const pa_sink_info& sink) {
  SoundOutput output;
  output.key.sink = textOf(sink.name);
  if (sink.active_port) {
    output.key.port = textOf(sink.active_port->name);
    output.isPluggedIn = sink.active_port->available != PA_PORT_AVAILABLE_NO;
  }
  output.description = sink.description && *sink.description ? sink.description : output.key.sink;
  output.address = addressOf(sink.proplist);
  output.kind = kindOf(sink);
  output.volume = sink.volume;
  output.isMuted = sink.mute != 0;
  return output;
}

float SoundOutput::loudness() const {
  return isMuted ? 0.0F : static_cast<float>(libpulse().pa_cvolume_avg(&volume)) / static_cast<float>(PA_VOLUME_NORM);
}

const SoundOutput* SoundServerState::current() const {
  if (defaultSink == kNoDevice) return nullptr;
  const auto one = std::find_if(outputs.begin(), outputs.end(),
                                [this](const SoundOutput& output) { return output.key.sink == defaultSink; });
  return one == outputs.end() || !one->isPluggedIn ? nullptr : &*one;
}

bool SoundServerState::isSettled() const {
  const auto isThere = [](const SoundOutput& output) { return output.isPluggedIn && output.key.sink != kNoDevice; };
  const auto isDefault = [this](const SoundOutput& output) { return output.key.sink == defaultSink; };
  return std::none_of(outputs.begin(), outputs.end(), isThere) ||
         (defaultSink != kNoDevice && std::any_of(outputs.begin(), outputs.end(), isDefault));
}

const SoundOutput* SoundServerState::find(const SoundOutputKey& key) const {
  const auto one = std::find_if(outputs.begin(), outputs.end(),
                                [&](const SoundOutput& output) { return output.isPluggedIn && output.key == key; });
  return one == outputs.end() ? nullptr : &*one;
}

std::optional<std::int32_t> routeChangeReason(const SoundServerState& before, const SoundServerState& now) {
  constexpr std::int32_t chosen = 0, newDeviceAvailable = 1;
  const SoundOutput* old = before.current();
  const SoundOutput* current = now.current();
  if (old && current && old->key == current->key) return std::nullopt;
  if (old && !now.find(old->key)) return kAudioSessionRouteChangeReasonOldDeviceUnavailable;
  if (current && !before.find(current->key)) return newDeviceAvailable;
  return old || current ? std::optional(chosen) : std::nullopt;
}

}  // namespace orn
