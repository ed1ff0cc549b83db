#include "simulation/SessionCalibration.h"

#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>
#include <ORNHearingTestSDK/calibration/LevelMapping.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>

namespace orn::simulation {

void calibrate(ORNManualHearingTest& session, OutputPath path, const std::string& reply) {
  const auto parsed = ORNDeviceCorrect::parse(reply);
  if (path == OutputPath::Audiometer) {
    const auto records = audiometerRecords(*parsed);
    session.setKV50MAC(kSimulatedAddress);
    session.setAb(records.ab);
    session.setAabb(records.aabb);
    session.setXxyy(records.xxyy);
  } else {
    const auto records = earphoneRecords(*parsed);
    session.setEarPlugModel(kSimulatedEarphoneModel);
    session.setLeftVolume(records.left);
    session.setRightVolue(records.right);
  }
}

bool hasRecords(const ORNManualHearingTest& session, OutputPath path) {
  return path == OutputPath::Audiometer ? session.ab() && session.aabb() && session.xxyy()
                                        : session.leftVolume() && session.rightVolue();
}

std::optional<double> levelOf(const ORNManualHearingTest& session, OutputPath path, std::int32_t hz, double amplitude) {
  if (path == OutputPath::Audiometer) {
    const std::string key = std::to_string(hz) + "hz";
    return audiometerLevel(session.ab().get(), session.aabb().get(), session.xxyy().get(), amplitude, key);
  }
  const auto& record = session.isTestLeft() ? session.leftVolume() : session.rightVolue();
  return earphoneLevel(record.get(), hz, amplitude);
}

}  // namespace orn::simulation
