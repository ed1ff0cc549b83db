#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// One calibration record: for one combination of hardware and earpiece, a value in dB per test frequency. Plain data,
/// without a lock of its own: any thread may read it once nobody changes it any more.
class ORN_EXPORT ORNDeviceVolumeIOS {
 public:
  /// Reads a record as the service sends it; the seven values per frequency are deciphered here. Never throws: what is
  /// missing, of a wrong type, undecipherable or nested more than 64 levels deep leaves its field absent, and anything
  /// but an object gives an empty record.
  static std::shared_ptr<ORNDeviceVolumeIOS> initWithDictionary(const nlohmann::json& dictionary);

  /// The fields that are present, under the keys of the service, base, batch and id always. The values per frequency
  /// stand deciphered, so this is not a valid input of initWithDictionary.
  nlohmann::json toDictionary() const;

  /// A field by its name, such as "s500": null if it is absent. A name that is not a field's gives the number 0.
  nlohmann::json valueForKey(std::string_view key) const;

  /// True: a reference record of an earpiece model; false: the record of one device.
  bool base() const { return base_; }
  void setBase(bool base) { base_ = base; }

  /// The device's production series; series 1 has its output lowered.
  std::int64_t batch() const { return batch_; }
  void setBatch(std::int64_t batch) { batch_ = batch; }

  /// The machine name that the record is for.
  const std::optional<std::string>& correctName() const { return correctName_; }
  void setCorrectName(std::optional<std::string> correctName) { correctName_ = std::move(correctName); }

  /// 1 left, 2 right; any JSON value, null if absent.
  nlohmann::json ear() const;
  void setEar(const nlohmann::json& ear);

  /// Held as it stands, null if absent. The library reads neither this nor edition, id, mac, machine and systemVolume.
  nlohmann::json earPath() const;
  void setEarPath(const nlohmann::json& earPath);

  /// "1" and "2" name the two reference models.
  const std::optional<std::string>& earplugModel() const { return earplugModel_; }
  void setEarplugModel(std::optional<std::string> earplugModel) { earplugModel_ = std::move(earplugModel); }
  const std::optional<std::string>& edition() const { return edition_; }
  void setEdition(std::optional<std::string> edition) { edition_ = std::move(edition); }
  std::int64_t id() const { return id_; }
  void setId(std::int64_t id) { id_ = id; }
  nlohmann::json mac() const;
  void setMac(const nlohmann::json& mac);
  const std::optional<std::string>& machine() const { return machine_; }
  void setMachine(std::optional<std::string> machine) { machine_ = std::move(machine); }

  /// Calibration values in dB per frequency in Hz, as decimal texts; absent if the value is missing or could not be
  /// deciphered.
  const std::optional<std::string>& s1000() const { return s1000_; }
  void setS1000(std::optional<std::string> s1000) { s1000_ = std::move(s1000); }
  const std::optional<std::string>& s125() const { return s125_; }
  void setS125(std::optional<std::string> s125) { s125_ = std::move(s125); }
  const std::optional<std::string>& s2000() const { return s2000_; }
  void setS2000(std::optional<std::string> s2000) { s2000_ = std::move(s2000); }
  const std::optional<std::string>& s250() const { return s250_; }
  void setS250(std::optional<std::string> s250) { s250_ = std::move(s250); }
  const std::optional<std::string>& s4000() const { return s4000_; }
  void setS4000(std::optional<std::string> s4000) { s4000_ = std::move(s4000); }
  const std::optional<std::string>& s500() const { return s500_; }
  void setS500(std::optional<std::string> s500) { s500_ = std::move(s500); }
  const std::optional<std::string>& s8000() const { return s8000_; }
  void setS8000(std::optional<std::string> s8000) { s8000_ = std::move(s8000); }

  /// Never deciphered.
  const std::optional<std::string>& systemVolume() const { return systemVolume_; }
  void setSystemVolume(std::optional<std::string> systemVolume) { systemVolume_ = std::move(systemVolume); }

 private:
  struct TextField;
  static const TextField textFields[];

  bool base_ = false;
  std::int64_t batch_ = 0, id_ = 0;
  std::shared_ptr<const nlohmann::json> ear_, earPath_, mac_;  // null: absent
  std::optional<std::string> correctName_, earplugModel_, edition_, machine_, systemVolume_;
  std::optional<std::string> s1000_, s125_, s2000_, s250_, s4000_, s500_, s8000_;
};

}  // namespace orn
