#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>

#include <algorithm>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>
#include <ORNHearingTestSDK/common/JsonReading.h>

namespace orn {
namespace {

using nlohmann::json;
using Untyped = std::shared_ptr<const json>;

constexpr int kDeepestNesting = 64;

bool nestsDeeper(const json& value, int levels) {
  if (!value.is_structured()) return false;
  return levels == 0 ||
         std::any_of(value.begin(), value.end(), [&](const json& part) { return nestsDeeper(part, levels - 1); });
}

/// Copying goes down the nesting level by level, so a hostile depth would exhaust the stack.
Untyped held(const json& value) {
  if (value.is_null() || nestsDeeper(value, kDeepestNesting)) return nullptr;
  return std::make_shared<const json>(value);
}

json valueOf(const Untyped& value) { return value ? *value : json(); }

json valueOf(const std::optional<std::string>& text) { return text ? json(*text) : json(); }

void putIfPresent(json& dictionary, const char* key, json value) {
  if (!value.is_null()) dictionary[key] = std::move(value);
}

std::optional<std::string> deciphered(const std::optional<std::string>& text) {
  return text ? decipheredLevel(*text) : std::nullopt;
}

}  // namespace

struct ORNDeviceVolumeIOS::TextField {
  const char* key;
  std::string_view name;
  std::optional<std::string> ORNDeviceVolumeIOS::*field;
  bool isEnciphered = false;
};

const ORNDeviceVolumeIOS::TextField ORNDeviceVolumeIOS::textFields[] = {
    {"correct_name", "correctName", &ORNDeviceVolumeIOS::correctName_},
    {"earplug_model", "earplugModel", &ORNDeviceVolumeIOS::earplugModel_},
    {"edition", "edition", &ORNDeviceVolumeIOS::edition_},
    {"machine", "machine", &ORNDeviceVolumeIOS::machine_},
    {"s1000", "s1000", &ORNDeviceVolumeIOS::s1000_, true},
    {"s125", "s125", &ORNDeviceVolumeIOS::s125_, true},
    {"s2000", "s2000", &ORNDeviceVolumeIOS::s2000_, true},
    {"s250", "s250", &ORNDeviceVolumeIOS::s250_, true},
    {"s4000", "s4000", &ORNDeviceVolumeIOS::s4000_, true},
    {"s500", "s500", &ORNDeviceVolumeIOS::s500_, true},
    {"s8000", "s8000", &ORNDeviceVolumeIOS::s8000_, true},
    {"system_volume", "systemVolume", &ORNDeviceVolumeIOS::systemVolume_},
};

std::shared_ptr<ORNDeviceVolumeIOS> ORNDeviceVolumeIOS::initWithDictionary(const json& dictionary) {
  auto record = std::make_shared<ORNDeviceVolumeIOS>();
  record->base_ = jsonBool(jsonMember(dictionary, "base"));
  record->batch_ = jsonInteger(jsonMember(dictionary, "batch"));
  record->id_ = jsonInteger(jsonMember(dictionary, "id"));
  record->ear_ = held(jsonMember(dictionary, "ear"));
  record->earPath_ = held(jsonMember(dictionary, "earPath"));
  record->mac_ = held(jsonMember(dictionary, "mac"));
  for (const auto& [key, name, field, isEnciphered] : textFields) {
    const auto text = jsonText(jsonMember(dictionary, key));
    (*record).*field = isEnciphered ? deciphered(text) : text;
  }
  return record;
}

json ORNDeviceVolumeIOS::toDictionary() const {
  json dictionary = {{"base", base_}, {"batch", batch_}, {"id", id_}};
  putIfPresent(dictionary, "ear", ear());
  putIfPresent(dictionary, "earPath", earPath());
  putIfPresent(dictionary, "mac", mac());
  for (const auto& text : textFields) putIfPresent(dictionary, text.key, valueOf(this->*text.field));
  return dictionary;
}

json ORNDeviceVolumeIOS::valueForKey(std::string_view key) const {
  for (const auto& text : textFields) {
    if (text.name == key) return valueOf(this->*text.field);
  }
  if (key == "base") return base_;
  if (key == "batch") return batch_;
  if (key == "id") return id_;
  if (key == "ear") return ear();
  if (key == "earPath") return earPath();
  if (key == "mac") return mac();
  return 0;
}

json ORNDeviceVolumeIOS::ear() const { return valueOf(ear_); }
json ORNDeviceVolumeIOS::earPath() const { return valueOf(earPath_); }
json ORNDeviceVolumeIOS::mac() const { return valueOf(mac_); }

void ORNDeviceVolumeIOS::setEar(const json& ear) { ear_ = held(ear); }
void ORNDeviceVolumeIOS::setEarPath(const json& earPath) { earPath_ = held(earPath); }
void ORNDeviceVolumeIOS::setMac(const json& mac) { mac_ = held(mac); }

}  // namespace orn
