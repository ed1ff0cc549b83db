#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/calibration/CalibrationRecords.h>
#include <ORNHearingTestSDK/engine/ORNHearingTest.h>

namespace orn {

/// A session's device, an audiometer or earphones, with the calibration that was fetched for it. It knows no tones.
class ORN_EXPORT CalibratedHearingTest : public ORNHearingTest, public CalibrationRecords {
 public:
  /// The audiometer's address; its presence decides the output path of every step.
  const std::optional<std::string>& KV50MAC() const { return KV50MAC_; }
  void setKV50MAC(std::optional<std::string> KV50MAC) { KV50MAC_ = std::move(KV50MAC); }

  /// Takes the audiometer's address and fills ab, aabb and xxyy, from the cache file or from the service. The callback
  /// comes once: within this call if the file was there, on the main thread later if not. It has no error unless no
  /// reply came at all, so a refusal looks like a success without records.
  void setKV50MAC(const std::string& KV50MAC, CompletionHandler completionHandler) override;

  /// The same with a cache file of its own. The second argument of the callback is always nothing.
  void getTestHistoryByMAC(const std::string& KV50MAC,
                           std::function<void(std::optional<Error>, std::nullptr_t)> completionHandler);

  /// Takes the earphones' model and fills leftVolume and rightVolue. The callback comes once, on the main thread, if
  /// the service had to be asked, and never if the records came from the cache file.
  using ORNHearingTest::setEarPlugModel;
  void setEarPlugModel(const std::string& earPlugModel, CompletionHandler completionHandler);

  /// What goes with the result: an audiometer's address stands in the model's place.
  const std::optional<std::string>& deviceInUse() const { return usesAudiometer() ? KV50MAC_ : earPlugModel(); }

  /// Hands a reply's records to this session, for as long as there is one.
  std::function<void(const ORNDeviceCorrect&)> taking(void (CalibrationRecords::*take)(const ORNDeviceCorrect&));

 protected:
  CalibratedHearingTest() = default;

  bool usesAudiometer() const { return KV50MAC_.has_value(); }  ///< Whether the tones go to an audiometer.

 private:
  std::optional<std::string> KV50MAC_;
};

}  // namespace orn
