#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/PosixFileManager.h>

namespace orn {

/// The user's own files, placed by the XDG base directories; the library's real bundles. Any thread, as long as none
/// changes the environment.
class ORN_EXPORT LinuxFileManager final : public PosixFileManager {
 public:
  /// The identifier names the application's folder, such as "org.example.app".
  explicit LinuxFileManager(std::string applicationIdentifier);
  ~LinuxFileManager() override;

  /// $XDG_DATA_HOME/APPLICATION/documents, or ~/.local/share where that variable is empty or relative.
  /// Made, for this user alone, when it is missing; if that fails, the path comes back all the same and whatever is
  /// written below it fails.
  std::string documentsDirectory() const override;

 private:
  const std::string applicationIdentifier_;
};

}  // namespace orn
