#include <ORNHearingTestSDK/platform/PosixFileManager.h>

#include <ORNHearingTestSDK/platform/LibraryFolder.h>
#include <ORNHearingTestSDK/platform/PosixFiles.h>

namespace orn {

std::optional<std::string> PosixFileManager::resourceBundle(const std::string& name) const {
  return bundleBesideLibrary(name);
}

std::optional<std::vector<std::uint8_t>> PosixFileManager::contents(const std::string& path) const {
  return readFile(path);
}

bool PosixFileManager::writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) {
  return replaceFile(path, bytes);
}

bool PosixFileManager::fileExists(const std::string& path) const { return orn::fileExists(path); }

bool PosixFileManager::removeFile(const std::string& path) { return orn::removeFile(path); }

}  // namespace orn
