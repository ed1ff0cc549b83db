#pragma once

#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>

namespace orn {

/// Holds the output's volume at full, and puts it back at its end. One at a time. Main thread.
class FullVolume {
 public:
  FullVolume() {
    ORNSystemVolumeManager::saveSystemVolume();
    ORNSystemVolumeManager::setSystemVolumeToMax();
  }
  ~FullVolume() { ORNSystemVolumeManager::reStoreSystemVolume(); }
  FullVolume(const FullVolume&) = delete;
  FullVolume& operator=(const FullVolume&) = delete;

  /// Whoever turns the volume down in mid-test would make every level wrong.
  void hold() const {
    if (ORNSystemVolumeManager::getSystemVolume() != 1) ORNSystemVolumeManager::setSystemVolumeToMax();
  }
};

}  // namespace orn
