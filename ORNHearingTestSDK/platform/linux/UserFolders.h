#pragma once

#include <string>

namespace orn {

/// The application's folder below the user's configuration folder, by the XDG base directories:
/// $XDG_CONFIG_HOME, or ~/.config where that is empty or not absolute. A "/" in the identifier becomes "_", so the
/// folder is always one right below. It need not exist. Any thread, as long as none changes the environment.
std::string configFolder(const std::string& applicationIdentifier);

/// The same below $XDG_DATA_HOME, or ~/.local/share.
std::string dataFolder(const std::string& applicationIdentifier);

}  // namespace orn
