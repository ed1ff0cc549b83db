#include "simulation/listener/HearingLevel.h"

#include <ORNHearingTestSDK/calibration/LevelMapping.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>

namespace orn::simulation {

std::optional<double> levelOf(const ORNManualHearingTest& session, OutputPath path, std::int32_t hz, double amplitude) {
  if (path == OutputPath::Audiometer) {
    return audiometerLevel(session.ab().get(), session.aabb().get(), session.xxyy().get(), amplitude, frequencyKey(hz));
  }
  const auto& record = session.isTestLeft() ? session.leftVolume() : session.rightVolue();
  return earphoneLevel(record.get(), hz, amplitude);
}

}  // namespace orn::simulation
