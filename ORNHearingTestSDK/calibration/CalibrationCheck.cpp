#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>

#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>
#include <ORNHearingTestSDK/calibration/LevelMapping.h>

namespace orn {

bool isCalibration(OutputPath path, const std::string& reply, const std::vector<std::string>& hzs) {
  const auto parsed = ORNDeviceCorrect::parse(reply);
  if (parsed->rspCode() != 0) return false;
  const auto has = [&](const auto& record) { return hasCalibrationNumbers(record.get(), hzs); };
  const auto device = audiometerRecords(*parsed);
  const auto ears = earphoneRecords(*parsed);
  return path == OutputPath::Audiometer ? has(device.ab) && has(device.aabb) && has(device.xxyy)
                                        : has(ears.left) && has(ears.right);
}

}  // namespace orn
