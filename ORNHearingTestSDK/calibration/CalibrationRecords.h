#pragma once

#include <memory>
#include <utility>

#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

class ORNDeviceCorrect;

/// The calibration that a session has: the earphones' records by ear, and the audiometer's own with those of the two
/// reference earplugs, models "2" and "1". Null where none has come. Main thread.
class ORN_EXPORT CalibrationRecords {
 public:
  using Record = std::shared_ptr<const ORNDeviceVolumeIOS>;  ///< One record, shared and never changed.

  const Record& leftVolume() const { return leftVolume_; }                ///< The left earphone's.
  void setLeftVolume(Record record) { leftVolume_ = std::move(record); }  ///< Takes one for the left earphone.
  const Record& rightVolue() const { return rightVolue_; }                ///< The right earphone's.
  void setRightVolue(Record record) { rightVolue_ = std::move(record); }  ///< Takes one for the right earphone.
  const Record& ab() const { return ab_; }                                ///< The audiometer's own.
  void setAb(Record record) { ab_ = std::move(record); }                  ///< Takes the audiometer's own.
  const Record& aabb() const { return aabb_; }                            ///< That of reference earplug 2.
  void setAabb(Record record) { aabb_ = std::move(record); }              ///< Takes that of reference earplug 2.
  const Record& xxyy() const { return xxyy_; }                            ///< That of reference earplug 1.
  void setXxyy(Record record) { xxyy_ = std::move(record); }              ///< Takes that of reference earplug 1.

  /// Takes what a reply has of a device's records; the others stay as they are.
  void takeAudiometer(const ORNDeviceCorrect& reply);
  void takeEarphones(const ORNDeviceCorrect& reply);  ///< The earphones' records of a reply.

 private:
  Record leftVolume_, rightVolue_;
  Record ab_, aabb_, xxyy_;
};

}  // namespace orn
