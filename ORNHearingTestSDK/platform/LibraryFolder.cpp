#include <ORNHearingTestSDK/platform/LibraryFolder.h>

#include <dlfcn.h>

#include <filesystem>
#include <string_view>
#include <vector>

namespace orn {
namespace {

using std::filesystem::path;

/// The file that this code was loaded from: the library, or what a static one was linked into.
path ownFile() {
  Dl_info info{};
  const bool isKnown = dladdr(reinterpret_cast<const void*>(&bundleBesideLibrary), &info) != 0 && info.dli_fname;
  std::error_code error;
  // A program is known by the name that it was called by, which is not a path if it was looked up.
  if (isKnown && std::string_view(info.dli_fname).find('/') != std::string_view::npos) {
    return std::filesystem::canonical(info.dli_fname, error);
  }
  return std::filesystem::canonical("/proc/self/exe", error);
}

std::vector<path> bundleFolders() {
  std::vector<path> folders;
  if (const path own = ownFile(); !own.empty()) {
    folders.push_back(own.parent_path() / "ORNHearingTestSDK");
#ifdef ORN_BUNDLES_FROM_PROGRAM
    folders.push_back(own.parent_path() / ORN_BUNDLES_FROM_PROGRAM);
#endif
  }
#ifdef ORN_BUNDLES_BUILT
  folders.insert(folders.end(), {ORN_BUNDLES_BUILT, ORN_BUNDLES_INSTALLED});
#endif
  return folders;
}

}  // namespace

std::optional<std::string> bundleBesideLibrary(const std::string& name) {
  std::error_code error;
  for (const path& folder : bundleFolders()) {
    if (std::filesystem::is_directory(folder / name, error)) return (folder / name).lexically_normal().string();
  }
  return std::nullopt;
}

}  // namespace orn
