#include <ORNHearingTestSDK/platform/linux/UserFolders.h>

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <vector>

namespace orn {
namespace {

using std::filesystem::path;

std::optional<path> folderInVariable(const char* variable) {
  const char* const text = std::getenv(variable);
  if (!text || !path(text).is_absolute()) return std::nullopt;
  return path(text);
}

path homeFolder() {
  if (const auto home = folderInVariable("HOME")) return *home;
  std::vector<char> texts(16'384);
  passwd entry{};
  passwd* found = nullptr;
  const bool known = getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found) == 0 && found;
  // A user without a home gets absolute paths all the same; they just can't be made.
  return known && path(found->pw_dir).is_absolute() ? path(found->pw_dir) : path("/");
}

std::string applicationFolder(const path& base, std::string identifier) {
  std::replace_if(
      identifier.begin(), identifier.end(), [](char c) { return c == '/' || c == '\0'; }, '_');
  if (identifier.empty() || identifier == "." || identifier == "..") identifier = "_";
  return (base / identifier).string();
}

}  // namespace

std::string configFolder(const std::string& applicationIdentifier) {
  const auto given = folderInVariable("XDG_CONFIG_HOME");
  return applicationFolder(given ? *given : homeFolder() / ".config", applicationIdentifier);
}

std::string dataFolder(const std::string& applicationIdentifier) {
  const auto given = folderInVariable("XDG_DATA_HOME");
  return applicationFolder(given ? *given : homeFolder() / ".local/share", applicationIdentifier);
}

}  // namespace orn
