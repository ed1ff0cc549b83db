#pragma once

#include <optional>
#include <string>

namespace orn {

/// Folder of a resource bundle, which stands in a folder of the library's name beside the library's own file; so the
/// bundles are found wherever the library is put. Nothing if there is no such folder. Any thread.
std::optional<std::string> bundleBesideLibrary(const std::string& name);

}  // namespace orn
