#pragma once

#include <optional>
#include <string>

namespace orn {

/// Folder of a resource bundle, which stands in a folder of the library's name beside the library's own file; so the
/// bundles are found wherever the library is put. A static library's are looked for beside the program, in the library
/// folder beside the program's, and then where they were built and installed. Nothing if there is no such folder. Any
/// thread.
///
/// A platform whose libraries have no folder brings another implementation of this function alone, as the file that the
/// build option ORN_BUNDLES_SOURCE names; or its FileManager answers resourceBundle() without it.
std::optional<std::string> bundleBesideLibrary(const std::string& name);

}  // namespace orn
