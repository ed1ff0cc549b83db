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

bool hasRecords(ORNManualHearingTest& session, OutputPath path) {
  const auto hzs = session.hzs();
  const auto has = [&](const auto& record) { return hasCalibration(record.get(), hzs); };
  return path == OutputPath::Audiometer ? has(session.ab()) && has(session.aabb()) && has(session.xxyy())
                                        : has(session.leftVolume()) && has(session.rightVolue());
}

bool isCalibration(OutputPath path, const std::string& reply, const std::vector<std::string>& hzs) {
  const auto parsed = ORNDeviceCorrect::parse(reply);
  if (parsed->rspCode() != 0) return false;
  const auto has = [&](const auto& record) { return hasCalibration(record.get(), hzs); };
  const auto device = audiometerRecords(*parsed);
  const auto ears = earphoneRecords(*parsed);
  return path == OutputPath::Audiometer ? has(device.ab) && has(device.aabb) && has(device.xxyy)
                                        : has(ears.left) && has(ears.right);
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
