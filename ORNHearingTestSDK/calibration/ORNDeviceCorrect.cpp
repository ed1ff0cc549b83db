#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/JsonReading.h>
#include <ORNHearingTestSDK/platform/Device.h>
#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

using nlohmann::json;

std::shared_ptr<ORNDeviceCorrect> ORNDeviceCorrect::initWithDictionary(const json& dictionary) {
  auto reply = std::make_shared<ORNDeviceCorrect>();
  if (const json& list = jsonMember(dictionary, "deviceVolumeIOS"); list.is_array()) {
    auto& records = reply->deviceVolumeIOS_.emplace();
    for (const json& element : list) {
      // An empty record, which anything else would read as, passes for a device's own calibration.
      if (element.is_object()) records.push_back(ORNDeviceVolumeIOS::initWithDictionary(element));
    }
  }
  reply->rspCode_ = jsonInteger(jsonMember(dictionary, "rspCode"));
  reply->rspDesc_ = jsonText(jsonMember(dictionary, "rspDesc"));
  return reply;
}

std::shared_ptr<ORNDeviceCorrect> ORNDeviceCorrect::parse(std::string_view jsonText) {
  if (isNestedTooDeep(jsonText)) return initWithDictionary(json::object());
  return initWithDictionary(json::parse(jsonText, nullptr, /*allow_exceptions=*/false));
}

std::string ORNDeviceCorrect::platform() { return Platform::current().device->machine(); }

json ORNDeviceCorrect::toDictionary() const {
  json dictionary = {{"rspCode", rspCode_}};
  if (rspDesc_) dictionary["rspDesc"] = *rspDesc_;
  if (deviceVolumeIOS_) {
    json& list = dictionary["deviceVolumeIOS"] = json::array();
    for (const auto& record : *deviceVolumeIOS_) {
      if (record) list.push_back(record->toDictionary());
    }
  }
  return dictionary;
}

}  // namespace orn
