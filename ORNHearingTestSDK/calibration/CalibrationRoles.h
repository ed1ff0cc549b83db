#pragma once

#include <memory>

#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// Which record of a reply has which role in the level mapping. The last one listed for a role counts; a role without a
// record is null.

/// The audiometer's own record, and those of the reference earplug models "2" and "1".
struct AudiometerRecords {
  std::shared_ptr<ORNDeviceVolumeIOS> ab;    ///< The audiometer's own.
  std::shared_ptr<ORNDeviceVolumeIOS> aabb;  ///< That of model "2".
  std::shared_ptr<ORNDeviceVolumeIOS> xxyy;  ///< That of model "1".
};

/// The earphones' record per ear.
struct EarphoneRecords {
  std::shared_ptr<ORNDeviceVolumeIOS> left;   ///< Of ear 1.
  std::shared_ptr<ORNDeviceVolumeIOS> right;  ///< Of ear 2.
};

ORN_EXPORT AudiometerRecords audiometerRecords(const ORNDeviceCorrect& reply);
ORN_EXPORT EarphoneRecords earphoneRecords(const ORNDeviceCorrect& reply);

}  // namespace orn
