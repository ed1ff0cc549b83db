// For a host whose tone files are in a folder of its own, which the environment names.
#include <ORNHearingTestSDK/platform/LibraryFolder.h>

#include <cstdlib>

std::optional<std::string> orn::bundleBesideLibrary(const std::string& name) {
  const char* folder = std::getenv("HEARING_BUNDLES");
  return folder ? std::optional(std::string(folder) + "/" + name) : std::nullopt;
}
