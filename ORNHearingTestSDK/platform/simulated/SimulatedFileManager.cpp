#include <ORNHearingTestSDK/platform/simulated/SimulatedFileManager.h>

#include <cstdlib>
#include <filesystem>

#include <ORNHearingTestSDK/platform/LibraryFolder.h>
#include <ORNHearingTestSDK/platform/PosixFiles.h>

namespace orn {

SimulatedFileManager::~SimulatedFileManager() {
  std::error_code error;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, error);
}

std::string SimulatedFileManager::documentsDirectory() const {
  const std::lock_guard lock(mutex_);
  if (folder_.empty()) {
    std::error_code error;
    std::string fresh = (std::filesystem::temp_directory_path(error) / "hearing-documents.XXXXXX").string();
    if (!error && mkdtemp(fresh.data())) folder_ = fresh;
  }
  return folder_;
}

std::optional<std::string> SimulatedFileManager::resourceBundle(const std::string& name) const {
  return bundleBesideLibrary(name);
}

std::optional<std::vector<std::uint8_t>> SimulatedFileManager::contents(const std::string& path) const {
  return readFile(path);
}

bool SimulatedFileManager::writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) {
  return replaceFile(path, bytes);
}

bool SimulatedFileManager::fileExists(const std::string& path) const { return orn::fileExists(path); }

bool SimulatedFileManager::removeFile(const std::string& path) { return orn::removeFile(path); }

}  // namespace orn
