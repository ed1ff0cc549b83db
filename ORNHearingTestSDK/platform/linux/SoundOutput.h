#pragma once

#include <compare>
#include <optional>
#include <string>
#include <vector>

#include <pulse/introspect.h>
#include <pulse/volume.h>

#include <ORNHearingTestSDK/platform/AudioSession.h>

namespace orn {

/// What identifies an output over time: the sink and the port in use.
struct SoundOutputKey {
  std::string sink;
  std::string port;

  auto operator<=>(const SoundOutputKey&) const = default;
};

/// One output of the sound server, as it was when the server was asked.
struct SoundOutput {
  SoundOutputKey key;
  std::string description;  ///< The name that people see.
  std::string address;      ///< Of a Bluetooth device, such as "AA:BB:CC:DD:EE:FF"; empty for any other.
  std::string kind;         ///< "Headphone", "Headset", "Speaker" and the like.
  bool isPluggedIn = true;  ///< False where the server knows that nothing is in the port.
  pa_cvolume volume{};
  bool isMuted = false;

  static SoundOutput of(const pa_sink_info& sink);

  /// The route as one text: the kind, with "BT" after it for Bluetooth.
  std::string routeText() const { return address.empty() ? kind : kind + "BT"; }

  /// The UID begins with the device's address where there is one.
  AudioPort port() const { return {description, address.empty() ? key.sink : address + "-" + key.sink}; }

  /// Mean of the channels, 0 when muted; above 1 where the server amplifies.
  float loudness() const;
};

/// What the server reported of its outputs; no outputs while there is no server.
struct SoundServerState {
  std::vector<SoundOutput> outputs;
  std::string defaultSink;

  /// The output that sound goes to; null if there is none, or nothing is plugged into it.
  const SoundOutput* current() const;

  /// Whether the server knows which of its outputs sound goes to, or has none that it could go to. A server that is
  /// made of several programs reports a new output before they have agreed on the default one.
  bool isSettled() const;

  /// The output by its key, if it is there and plugged in, else null.
  const SoundOutput* find(const SoundOutputKey& key) const;
};

/// Why the current output changed since an earlier state: the old device is unavailable (2), a new one came (1), or one
/// that was there is chosen (0); nothing if it did not change.
std::optional<std::int32_t> routeChangeReason(const SoundServerState& before, const SoundServerState& now);

}  // namespace orn
