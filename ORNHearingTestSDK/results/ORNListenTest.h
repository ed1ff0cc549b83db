#pragma once

#include <memory>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// One stored hearing test as the service returns it. Texts and objects are held as they came, so a number that stands
/// where a text is expected stays a number; null means empty. Thresholds are decimal texts of dB HL, "-1" for none;
/// createDate is in milliseconds since 1970. Plain data: one thread at a time.
class ORN_EXPORT ORNListenTest {
 public:
  ORNListenTest();
  ~ORNListenTest();
  ORNListenTest(const ORNListenTest& other);             ///< A copy of every field.
  ORNListenTest& operator=(const ORNListenTest& other);  ///< The same.

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

  std::shared_ptr<ORNListenTest> copyWithZone() const;  ///< A copy of every field.

  /// The fields, each under the key that kORNListenTest... of ORNListenTestKeys.h names after it.
  const nlohmann::json& correctName() const;
  void setCorrectName(nlohmann::json value);
  const nlohmann::json& internalBaseClassIdentifier() const;
  void setInternalBaseClassIdentifier(nlohmann::json value);
  const nlohmann::json& left1000hz() const;
  void setLeft1000hz(nlohmann::json value);
  const nlohmann::json& ordinaryEmail() const;
  void setOrdinaryEmail(nlohmann::json value);
  const nlohmann::json& personID() const;
  void setPersonID(nlohmann::json value);
  double leftResultD() const;
  void setLeftResultD(double value);
  const nlohmann::json& left125hz() const;
  void setLeft125hz(nlohmann::json value);
  const nlohmann::json& right4000hz() const;
  void setRight4000hz(nlohmann::json value);
  double leftScore() const;
  void setLeftScore(double value);
  bool diagnose() const;
  void setDiagnose(bool value);
  double score() const;
  void setScore(double value);
  const nlohmann::json& ordinaryUserID() const;
  void setOrdinaryUserID(nlohmann::json value);
  const nlohmann::json& rightResult() const;
  void setRightResult(nlohmann::json value);
  const nlohmann::json& leftResult() const;
  void setLeftResult(nlohmann::json value);
  const nlohmann::json& left2000hz() const;
  void setLeft2000hz(nlohmann::json value);
  const nlohmann::json& left250hz() const;
  void setLeft250hz(nlohmann::json value);
  const nlohmann::json& grade() const;
  void setGrade(nlohmann::json value);
  double rightScore() const;
  void setRightScore(double value);
  double rightResulD() const;
  void setRightResulD(double value);
  const nlohmann::json& left500hz() const;
  void setLeft500hz(nlohmann::json value);
  const nlohmann::json& deviceVolumeIOS() const;
  void setDeviceVolumeIOS(nlohmann::json value);
  const nlohmann::json& right8000hz() const;
  void setRight8000hz(nlohmann::json value);
  const nlohmann::json& right500hz() const;
  void setRight500hz(nlohmann::json value);
  const nlohmann::json& right125hz() const;
  void setRight125hz(nlohmann::json value);
  const nlohmann::json& noise() const;
  void setNoise(nlohmann::json value);
  const nlohmann::json& ordinaryPhone() const;
  void setOrdinaryPhone(nlohmann::json value);
  const nlohmann::json& right2000hz() const;
  void setRight2000hz(nlohmann::json value);
  double createDate() const;
  void setCreateDate(double value);
  const nlohmann::json& ordinaryUserName() const;
  void setOrdinaryUserName(nlohmann::json value);
  double base() const;
  void setBase(double value);
  const nlohmann::json& right250hz() const;
  void setRight250hz(nlohmann::json value);
  const nlohmann::json& correctModel() const;
  void setCorrectModel(nlohmann::json value);
  const nlohmann::json& personName() const;
  void setPersonName(nlohmann::json value);
  const nlohmann::json& right1000hz() const;
  void setRight1000hz(nlohmann::json value);
  bool calibration() const;
  void setCalibration(bool value);
  const nlohmann::json& left4000hz() const;
  void setLeft4000hz(nlohmann::json value);
  const nlohmann::json& headset() const;
  void setHeadset(nlohmann::json value);
  const nlohmann::json& versions() const;
  void setVersions(nlohmann::json value);
  const nlohmann::json& left8000hz() const;
  void setLeft8000hz(nlohmann::json value);

 private:
  struct Fields;

  std::unique_ptr<Fields> fields_;
};

}  // namespace orn
