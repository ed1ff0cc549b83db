#pragma once

#include <mutex>
#include <string>

#include <ORNHearingTestSDK/platform/PosixFileManager.h>

namespace orn {

/// A documents folder of its own that is removed with this object; the library's real bundles. Any thread.
class ORN_EXPORT SimulatedFileManager final : public PosixFileManager {
 public:
  SimulatedFileManager() = default;
  ~SimulatedFileManager() override;
  SimulatedFileManager(const SimulatedFileManager&) = delete;
  SimulatedFileManager& operator=(const SimulatedFileManager&) = delete;

  /// Made at its first use; the empty text if that fails.
  std::string documentsDirectory() const override;

 private:
  mutable std::mutex mutex_;
  mutable std::string folder_;
};

}  // namespace orn
