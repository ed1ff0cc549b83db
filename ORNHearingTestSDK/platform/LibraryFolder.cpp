#include <ORNHearingTestSDK/platform/LibraryFolder.h>

#include <dlfcn.h>

#include <filesystem>

namespace orn {

std::optional<std::string> bundleBesideLibrary(const std::string& name) {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&bundleBesideLibrary), &info) == 0 || !info.dli_fname) return std::nullopt;
  std::error_code error;
  const auto library = std::filesystem::canonical(info.dli_fname, error);
  if (error) return std::nullopt;
  const auto bundle = library.parent_path() / "ORNHearingTestSDK" / name;
  if (!std::filesystem::is_directory(bundle, error)) return std::nullopt;
  return bundle.string();
}

}  // namespace orn
