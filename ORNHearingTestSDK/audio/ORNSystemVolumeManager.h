#pragma once

#include <memory>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The device's volume, 0 to 1: saved before a test, driven to full for it, and put back after it. Where the output
/// has no volume to drive, nothing happens. Main thread.
class ORN_EXPORT ORNSystemVolumeManager {
 public:
  /// The one manager of the platform in force, made at its first use.
  static std::shared_ptr<ORNSystemVolumeManager> shareInstance();

  ORNSystemVolumeManager() = default;
  ORNSystemVolumeManager(const ORNSystemVolumeManager&) = delete;
  ORNSystemVolumeManager& operator=(const ORNSystemVolumeManager&) = delete;

  /// The present volume, whatever was saved.
  static float getSystemVolume();

  /// Activates the audio session and keeps the present volume.
  static void saveSystemVolume();

  static void setSystemVolumeToMax();         ///< Drives the volume to full.
  static void setSystemVolume(float volume);  ///< Drives the volume, from 0 to 1.

  /// Puts the saved volume back: 0 if none was ever saved.
  static void reStoreSystemVolume();

  /// What saveSystemVolume() kept; 0 until then.
  float systemV() const { return systemV_; }

 private:
  float systemV_ = 0;
};

}  // namespace orn
