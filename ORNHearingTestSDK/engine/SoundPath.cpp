#include <ORNHearingTestSDK/engine/SoundPath.h>

#include <ORNHearingTestSDK/platform/AudioOutput.h>
#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

std::optional<ToneMissingReason> SoundPath::start(ORNHearingTestItem& item, float volume) {
  AudioOutput& output = *Platform::current().audioOutput;
  const bool hasStarted = play(item, volume);
  lapsesBefore_ = output.lapses();
  if (!hasStarted || output.status()) return ToneMissingReason::Output;
  return std::nullopt;
}

bool SoundPath::hasSoundedWhole() const { return Platform::current().audioOutput->lapses() == lapsesBefore_; }

}  // namespace orn
