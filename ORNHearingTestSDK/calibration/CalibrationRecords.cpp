#include <ORNHearingTestSDK/calibration/CalibrationRecords.h>

#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>

namespace orn {

void CalibrationRecords::takeAudiometer(const ORNDeviceCorrect& reply) {
  const AudiometerRecords records = audiometerRecords(reply);
  if (records.ab) ab_ = records.ab;
  if (records.aabb) aabb_ = records.aabb;
  if (records.xxyy) xxyy_ = records.xxyy;
}

void CalibrationRecords::takeEarphones(const ORNDeviceCorrect& reply) {
  const EarphoneRecords records = earphoneRecords(reply);
  if (records.left) leftVolume_ = records.left;
  if (records.right) rightVolue_ = records.right;
}

}  // namespace orn
