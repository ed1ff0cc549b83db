#include <ORNHearingTestSDK/engine/CalibratedHearingTest.h>

#include <memory>
#include <utility>

#include <ORNHearingTestSDK/calibration/CalibrationFetch.h>

namespace orn {

/// Records that arrive after the session has gone are of no use to anyone.
std::function<void(const ORNDeviceCorrect&)> CalibratedHearingTest::taking(
    void (CalibrationRecords::*take)(const ORNDeviceCorrect&)) {
  return [session = std::weak_ptr(self(this)), take](const ORNDeviceCorrect& reply) {
    if (const auto alive = session.lock()) ((*alive).*take)(reply);
  };
}

void CalibratedHearingTest::setKV50MAC(const std::string& KV50MAC, CompletionHandler completionHandler) {
  KV50MAC_ = KV50MAC;
  fetchAudiometerCalibration("", KV50MAC, taking(&CalibrationRecords::takeAudiometer), std::move(completionHandler));
}

void CalibratedHearingTest::getTestHistoryByMAC(
    const std::string& KV50MAC, std::function<void(std::optional<Error>, std::nullptr_t)> completionHandler) {
  KV50MAC_ = KV50MAC;
  fetchAudiometerCalibration("history", KV50MAC, taking(&CalibrationRecords::takeAudiometer),
                             [done = std::move(completionHandler)](std::optional<Error> error) {
                               if (done) done(std::move(error), nullptr);
                             });
}

void CalibratedHearingTest::setEarPlugModel(const std::string& earPlugModel, CompletionHandler completionHandler) {
  setEarPlugModel(std::optional(earPlugModel));
  fetchEarphoneCalibration(earPlugModel, taking(&CalibrationRecords::takeEarphones), std::move(completionHandler));
}

}  // namespace orn
