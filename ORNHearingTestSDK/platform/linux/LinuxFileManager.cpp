#include <ORNHearingTestSDK/platform/linux/LinuxFileManager.h>

#include <utility>

#include <ORNHearingTestSDK/platform/LibraryFolder.h>
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

std::optional<std::string> LinuxFileManager::resourceBundle(const std::string& name) const {
  return bundleBesideLibrary(name);
}

std::optional<std::vector<std::uint8_t>> LinuxFileManager::contents(const std::string& path) const {
  return readFile(path);
}

bool LinuxFileManager::writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) {
  return replaceFile(path, bytes);
}

bool LinuxFileManager::fileExists(const std::string& path) const { return orn::fileExists(path); }

bool LinuxFileManager::removeFile(const std::string& path) { return orn::removeFile(path); }

}  // namespace orn
