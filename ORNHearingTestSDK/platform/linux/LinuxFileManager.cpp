#include <ORNHearingTestSDK/platform/linux/LinuxFileManager.h>

#include <utility>

#include <ORNHearingTestSDK/platform/PosixFiles.h>
#include <ORNHearingTestSDK/platform/linux/UserFolders.h>

namespace orn {

LinuxFileManager::LinuxFileManager(std::string applicationIdentifier)
    : applicationIdentifier_(std::move(applicationIdentifier)) {}

LinuxFileManager::~LinuxFileManager() = default;

std::string LinuxFileManager::documentsDirectory() const {
  std::string folder = dataFolder(applicationIdentifier_) + "/documents";
  (void)makeFolders(folder);
  return folder;
}

}  // namespace orn
