#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <system_error>

#include <ORNHearingTestSDK/platform/linux/SoundServer.h>

namespace orn {

/// Drives the volume of outputs, and puts back to the very value what an output had before it was first driven: balance
/// between the ears, muting and amplification beyond full included. Main thread.
class OutputVolumes {
 public:
  explicit OutputVolumes(SoundServer& server);
  ~OutputVolumes();
  OutputVolumes(const OutputVolumes&) = delete;
  OutputVolumes& operator=(const OutputVolumes&) = delete;

  /// Whoever drives the volumes from now on begins anew.
  void begin() { putBackAt_.reset(); }

  /// Drives all channels of the current output to a volume of 0 to 1, unmuted. The value that an output had before it
  /// was driven instead puts back every output that was; one that has gone gets its own back as soon as it appears, and
  /// no other output is touched in its place. The same value once more changes nothing.
  std::error_code set(float volume);

 private:
  struct Original {
    std::optional<float> loudness;
    pa_cvolume volume{};
    bool isMuted = false;
    bool isDue = false;                      // to be put back when the output appears
    std::optional<std::uint64_t> holdUntil;  // while it may still be changed after it appeared
  };

  bool isOriginal(float volume) const;
  std::error_code drive(const SoundOutput& output, float volume);
  std::error_code putBack();
  void putBackWhatAppeared(const SoundServerState& now);

  SoundServer& server_;
  std::map<std::string, Original> originals_;  // by sink; guarded by the connection's lock
  std::optional<float> putBackAt_;             // since the last begin() or driving; main thread
  std::list<SoundServer::StateObserver>::iterator observer_;
};

}  // namespace orn
