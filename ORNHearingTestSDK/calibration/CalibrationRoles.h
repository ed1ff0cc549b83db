#pragma once

#include <memory>

#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// Which record of a reply plays which part in the level mapping. The last listed record of a part wins; a part for
// which no record came is null.

/// The audiometer's own record, and those of the reference earplug models "2" and "1".
struct AudiometerRecords {
  std::shared_ptr<ORNDeviceVolumeIOS> ab, aabb, xxyy;
};

/// The earphones' record per ear.
struct EarphoneRecords {
  std::shared_ptr<ORNDeviceVolumeIOS> left, right;
};

ORN_EXPORT AudiometerRecords audiometerRecords(const ORNDeviceCorrect& reply);
ORN_EXPORT EarphoneRecords earphoneRecords(const ORNDeviceCorrect& reply);

}  // namespace orn
