#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>

#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>
#include <ORNHearingTestSDK/calibration/LevelMapping.h>

namespace orn {

bool isCalibration(OutputPath path, const std::string& reply, const std::vector<std::string>& hzs) {
  return isCalibration(path, *ORNDeviceCorrect::parse(reply), hzs);
}

bool isCalibration(OutputPath path, const ORNDeviceCorrect& reply, const std::vector<std::string>& hzs) {
  if (reply.rspCode() != 0) return false;
  const auto has = [&](const auto& record) { return hasCalibrationNumbers(record.get(), hzs); };
  const auto device = audiometerRecords(reply);
  const auto ears = earphoneRecords(reply);
  return path == OutputPath::Audiometer ? has(device.ab) && has(device.aabb) && has(device.xxyy)
                                        : has(ears.left) && has(ears.right);
}

}  // namespace orn
