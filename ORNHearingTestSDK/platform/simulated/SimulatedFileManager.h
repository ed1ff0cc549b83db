#pragma once

#include <mutex>
#include <string>

#include <ORNHearingTestSDK/platform/FileManager.h>

namespace orn {

/// A documents folder of its own that goes with this object; the library's real bundles. Any thread.
class ORN_EXPORT SimulatedFileManager final : public FileManager {
 public:
  SimulatedFileManager() = default;
  ~SimulatedFileManager() override;
  SimulatedFileManager(const SimulatedFileManager&) = delete;
  SimulatedFileManager& operator=(const SimulatedFileManager&) = delete;

  /// Made at its first use; the empty text if that fails.
  std::string documentsDirectory() const override;
  std::optional<std::string> resourceBundle(const std::string& name) const override;
  std::optional<std::vector<std::uint8_t>> contents(const std::string& path) const override;
  bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) override;
  bool fileExists(const std::string& path) const override;
  bool removeFile(const std::string& path) override;

 private:
  mutable std::mutex mutex_;
  mutable std::string folder_;
};

}  // namespace orn
