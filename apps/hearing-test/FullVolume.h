#pragma once

#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>

namespace orn {

/// Holds the output's volume at full, and puts it back when it goes. One at a time. Main thread.
class FullVolume {
 public:
  FullVolume() {
    ORNSystemVolumeManager::saveSystemVolume();
    ORNSystemVolumeManager::setSystemVolumeToMax();
  }
  ~FullVolume() { ORNSystemVolumeManager::reStoreSystemVolume(); }
  FullVolume(const FullVolume&) = delete;
  FullVolume& operator=(const FullVolume&) = delete;

  /// Turns the volume up again: if somebody turns it down during a test, every level is wrong.
  void hold() const {
    if (ORNSystemVolumeManager::getSystemVolume() != 1) ORNSystemVolumeManager::setSystemVolumeToMax();
  }
};

}  // namespace orn
