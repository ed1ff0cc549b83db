#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>

#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/PerPlatform.h>
#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {
namespace {

AudioSession& session() { return *Platform::current().audioSession; }

}  // namespace

std::shared_ptr<ORNSystemVolumeManager> ORNSystemVolumeManager::shareInstance() {
  static PerPlatform<ORNSystemVolumeManager> instance;
  return instance.get([] { return std::make_shared<ORNSystemVolumeManager>(); });
}

float ORNSystemVolumeManager::getSystemVolume() { return session().outputVolume(); }

void ORNSystemVolumeManager::saveSystemVolume() {
  session().setActive(true);
  shareInstance()->systemV_ = session().outputVolume();
}

void ORNSystemVolumeManager::setSystemVolumeToMax() { setSystemVolume(1.0F); }

void ORNSystemVolumeManager::setSystemVolume(float volume) { session().setOutputVolume(volume); }

void ORNSystemVolumeManager::reStoreSystemVolume() { session().restoreOutputVolume(shareInstance()->systemV_); }

}  // namespace orn
