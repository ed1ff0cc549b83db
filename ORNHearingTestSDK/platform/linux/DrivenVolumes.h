#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <vector>

#include <ORNHearingTestSDK/platform/linux/SoundOutput.h>

namespace orn {

/// Which outputs have their volume driven, what the user had set on each, and what is to be set now: the server's
/// states go in, settings come out. An output is a sink together with its port, since servers keep a volume for each
/// port.
class DrivenVolumes {
 public:
  using Time = std::chrono::microseconds;  // since any fixed moment

  /// For this long after an output has come back, a server may set it to the volume that it saw there last; and for
  /// this long after a change it may still report the volume before it.
  static constexpr Time kHold = std::chrono::seconds(2);

  /// Balance between the ears, amplification beyond full and muting included.
  struct Loudness {
    pa_cvolume volume{};
    bool isMuted = false;

    bool hasVolumeOf(const Loudness& other) const;
    bool operator==(const Loudness& other) const { return hasVolumeOf(other) && isMuted == other.isMuted; }
  };

  struct Setting {
    SoundOutputKey output;
    Loudness loudness;
  };

  /// The next drive() begins anew: whatever has been changed since the last one is the user's.
  void begin() { isNew_ = true; }

  /// Drives all channels of the current output to a volume, unmuted; beyond 0 to 1 the nearer end counts, and NaN is 0.
  /// Nothing where there is no output.
  std::vector<Setting> drive(const SoundServerState& now, float volume);

  /// Puts back the driven outputs that are there, while the others get theirs when they appear. Where nothing was
  /// driven or put back since begin(), the current output gets the given volume.
  std::vector<Setting> putBack(const SoundServerState& now, float volume);

  /// A setting has been made. One that puts back and was not made comes again with the next state.
  void wasMade(const Setting& setting, Time time);

  /// Takes note of every state that the server tells, and puts back the outputs that have appeared.
  std::vector<Setting> see(const SoundServerState& now, Time time);

 private:
  struct Original {
    Loudness users, driven;
    Loudness found;                 // as set by the server when the output came back
    bool isDue = false;             // to be put back as soon as the output is there
    std::optional<Time> heldUntil;  // was put back, and is kept so until then

    bool isServers(const Loudness& now) const;
  };

  std::map<SoundOutputKey, Original> originals_;
  std::map<SoundOutputKey, Time> appeared_;  // of the outputs that are there
  bool isNew_ = true;
};

}  // namespace orn
