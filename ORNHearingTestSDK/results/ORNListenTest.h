#pragma once

#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// One stored hearing test as the service returns it. Texts and objects are held as they came, so a number that stands
/// where a text is expected stays a number; null means empty. Thresholds are decimal texts of dB HL, "-1" for none;
/// createDate is in milliseconds since 1970. Plain data: one thread at a time.
class ORN_EXPORT ORNListenTest {
 public:
  /// Never throws: anything but a dictionary gives a record with every field empty, 0 or false.
  static std::shared_ptr<ORNListenTest> modelObjectWithDictionary(const nlohmann::json& dictionary);
  static std::shared_ptr<ORNListenTest> initWithDictionary(const nlohmann::json& dictionary);

  /// A record from an archive that encodeWithCoder() has filled.
  static std::shared_ptr<ORNListenTest> initWithCoder(const nlohmann::json& coder);
  void encodeWithCoder(nlohmann::json& coder) const;

  /// Every field under its key; empty ones are left out, numbers and flags are always there.
  nlohmann::json dictionaryRepresentation() const;

  /// The dictionary as text.
  std::string description() const;

  std::shared_ptr<ORNListenTest> copyWithZone() const;

#define VALUE(field, Setter, key, constant)                \
  const nlohmann::json& field() const { return field##_; } \
  void set##Setter(nlohmann::json value) { field##_ = std::move(value); }
#define NUMBER(field, Setter, key, constant) \
  double field() const { return field##_; }  \
  void set##Setter(double value) { field##_ = value; }
#define FLAG(field, Setter, key, constant) \
  bool field() const { return field##_; }  \
  void set##Setter(bool value) { field##_ = value; }
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG

 private:
#define VALUE(field, Setter, key, constant) nlohmann::json field##_;
#define NUMBER(field, Setter, key, constant) double field##_ = 0;
#define FLAG(field, Setter, key, constant) bool field##_ = false;
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG
};

}  // namespace orn
