#include <ORNHearingTestSDK/platform/simulated/SimulatedFileManager.h>

#include <cstdlib>
#include <filesystem>

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

}  // namespace orn
