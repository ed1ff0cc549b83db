#include <ORNHearingTestSDK/engine/SessionCalibration.h>

#include <optional>
#include <utility>

#include <ORNHearingTestSDK/calibration/CalibrationFetch.h>
#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>
#include <ORNHearingTestSDK/calibration/LevelMapping.h>

namespace orn {

void calibrate(ORNManualHearingTest& session, OutputPath path, const std::string& device, const std::string& reply) {
  const auto parsed = ORNDeviceCorrect::parse(reply);
  if (path == OutputPath::Audiometer) {
    const auto records = audiometerRecords(*parsed);
    session.setKV50MAC(std::optional(device));
    session.setAb(records.ab);
    session.setAabb(records.aabb);
    session.setXxyy(records.xxyy);
  } else {
    const auto records = earphoneRecords(*parsed);
    session.setEarPlugModel(std::optional(device));
    session.setLeftVolume(records.left);
    session.setRightVolue(records.right);
  }
}

void fetchCalibration(ORNManualHearingTest& session, OutputPath path, const std::string& device,
                      ORNHearingTest::CompletionHandler done) {
  const bool isAudiometer = path == OutputPath::Audiometer;
  if (isAudiometer) {
    session.setKV50MAC(std::optional(device));
  } else {
    session.setKV50MAC(std::nullopt);
    session.setEarPlugModel(std::optional(device));
  }
  const auto take = isAudiometer ? &CalibrationRecords::takeAudiometer : &CalibrationRecords::takeEarphones;
  fetchCalibrationInFull(path, device, session.hzs(), session.taking(take), std::move(done));
}

bool isCalibrated(ORNManualHearingTest& session, OutputPath path) {
  const auto hzs = session.hzs();
  const auto has = [&](const auto& record) { return hasCalibrationNumbers(record.get(), hzs); };
  return path == OutputPath::Audiometer ? has(session.ab()) && has(session.aabb()) && has(session.xxyy())
                                        : has(session.leftVolume()) && has(session.rightVolue());
}

}  // namespace orn
