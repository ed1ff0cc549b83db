#include <ORNHearingTestSDK/platform/LibraryFolder.h>

#include <filesystem>

namespace orn {

/// Emscripten's file system holds the bundles, which the page loads together with the program.
std::optional<std::string> bundleBesideLibrary(const std::string& name) {
  const std::string folder = "/ORNHearingTestSDK/" + name;
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) return std::nullopt;
  return folder;
}

}  // namespace orn
