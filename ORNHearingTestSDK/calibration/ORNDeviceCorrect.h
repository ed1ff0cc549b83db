#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The service's reply to a calibration query. Plain data, without a lock of its own: any thread may read it once
/// nobody changes it any more.
class ORN_EXPORT ORNDeviceCorrect {
 public:
  using Records = std::vector<std::shared_ptr<ORNDeviceVolumeIOS>>;  ///< Records in the order of the reply.

  /// Reads a parsed reply. Never throws: a "deviceVolumeIOS" that is not a list counts as missing, anything but objects
  /// in it is skipped, and anything but an object gives an empty reply, whose rspCode is 0.
  static std::shared_ptr<ORNDeviceCorrect> initWithDictionary(const nlohmann::json& dictionary);

  /// Reads a reply's JSON text. Never throws: text that is not a JSON object, or nested more than 64 levels deep, gives
  /// an empty reply.
  static std::shared_ptr<ORNDeviceCorrect> parse(std::string_view jsonText);

  /// The hardware model, which requests send as `correct_name`.
  static std::string platform();

  /// The records as their own toDictionary gives them, deciphered: not a valid input of initWithDictionary.
  nlohmann::json toDictionary() const;

  /// In the order of the reply; nothing, and not an empty list, if the reply had none.
  const std::optional<Records>& deviceVolumeIOS() const { return deviceVolumeIOS_; }
  void setDeviceVolumeIOS(std::optional<Records> deviceVolumeIOS) { deviceVolumeIOS_ = std::move(deviceVolumeIOS); }

  /// 0 is success, and also what a reply without a code reads as.
  std::int64_t rspCode() const { return rspCode_; }
  void setRspCode(std::int64_t rspCode) { rspCode_ = rspCode; }

  /// The service's description of the outcome.
  const std::optional<std::string>& rspDesc() const { return rspDesc_; }
  void setRspDesc(std::optional<std::string> rspDesc) { rspDesc_ = std::move(rspDesc); }

 private:
  std::optional<Records> deviceVolumeIOS_;
  std::int64_t rspCode_ = 0;
  std::optional<std::string> rspDesc_;
};

}  // namespace orn
