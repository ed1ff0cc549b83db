#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/FileManager.h>

namespace orn {

/// The user's own files, placed by the XDG Base Directory Specification; the library's real bundles. Any thread, as
/// long as none changes the environment.
class ORN_EXPORT LinuxFileManager final : public FileManager {
 public:
  /// The identifier names the application's folder, such as "org.example.app".
  explicit LinuxFileManager(std::string applicationIdentifier);
  ~LinuxFileManager() override;

  /// $XDG_DATA_HOME/<application identifier>/documents, or ~/.local/share where that variable is empty or relative.
  /// Made, for this user alone, when it is missing; if that fails, the path comes back all the same and whatever is
  /// written below it fails.
  std::string documentsDirectory() const override;
  std::optional<std::string> resourceBundle(const std::string& name) const override;
  std::optional<std::vector<std::uint8_t>> contents(const std::string& path) const override;
  bool writeAtomically(const std::string& path, std::span<const std::uint8_t> bytes) override;
  bool fileExists(const std::string& path) const override;
  bool removeFile(const std::string& path) override;

 private:
  const std::string applicationIdentifier_;
};

}  // namespace orn
