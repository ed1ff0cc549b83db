#pragma once

#include <ORNHearingTestSDK/platform/FileManager.h>

namespace orn {

/// Real files and the library's real bundles; where the documents stand is for derived classes to say. Any thread.
class ORN_EXPORT PosixFileManager : public FileManager {
 public:
  std::optional<std::string> resourceBundle(const std::string& name) const override;
  std::optional<std::vector<std::uint8_t>> contents(const std::string& path) const override;
  bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) override;
  bool fileExists(const std::string& path) const override;
  bool removeFile(const std::string& path) override;
};

}  // namespace orn
