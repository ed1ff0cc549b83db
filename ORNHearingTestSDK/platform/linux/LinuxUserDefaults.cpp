#include <ORNHearingTestSDK/platform/linux/LinuxUserDefaults.h>

#include <filesystem>
#include <utility>

#include <ORNHearingTestSDK/platform/PosixFiles.h>
#include <ORNHearingTestSDK/platform/XmlText.h>
#include <ORNHearingTestSDK/platform/linux/DefaultsPlist.h>
#include <ORNHearingTestSDK/platform/linux/FileLock.h>
#include <ORNHearingTestSDK/platform/linux/UserFolders.h>

namespace orn {
namespace {

bool isMissing(const std::string& path) {
  std::error_code error;
  return std::filesystem::symlink_status(path, error).type() == std::filesystem::file_type::not_found;
}

bool setAside(const std::string& path) {
  constexpr int mostNames = 10'000;
  std::string aside = path + ".corrupt";
  for (int i = 2; !isMissing(aside); ++i) {
    if (i > mostNames) return false;
    aside = path + ".corrupt-" + std::to_string(i);
  }
  std::error_code error;
  std::filesystem::rename(path, aside, error);
  return !error;
}

}  // namespace

LinuxUserDefaults::LinuxUserDefaults(std::string path) : path_(std::move(path)) { (void)synchronize(); }

LinuxUserDefaults::~LinuxUserDefaults() = default;

std::string LinuxUserDefaults::defaultPath(const std::string& applicationIdentifier) {
  return configFolder(applicationIdentifier) + "/defaults.plist";
}

std::optional<DefaultsValue> LinuxUserDefaults::value(const std::string& key) const {
  const std::lock_guard lock(mutex_);
  if (const auto changed = changes_.find(key); changed != changes_.end()) return changed->second;
  const auto found = stored_.find(key);
  return found == stored_.end() ? std::nullopt : std::optional(found->second);
}

void LinuxUserDefaults::setValue(const std::string& key, DefaultsValue value) {
  if (!isXmlText(key)) return;
  const std::lock_guard lock(mutex_);
  changes_.insert_or_assign(key, DefaultsPlist::kept(std::move(value)));
}

void LinuxUserDefaults::removeValue(const std::string& key) {
  if (!isXmlText(key)) return;
  const std::lock_guard lock(mutex_);
  changes_.insert_or_assign(key, std::nullopt);
}

bool LinuxUserDefaults::synchronize() {
  const std::lock_guard lock(mutex_);
  if (!changes_.empty()) (void)makeFolders(std::filesystem::path(path_).parent_path());
  const FileLock otherProcesses(path_ + ".lock");
  auto list = load(otherProcesses.held());
  if (!list) return false;
  if (!changes_.empty() && !(otherProcesses.held() && store(*list))) return false;
  stored_ = list->values();
  changes_.clear();
  return true;
}

std::optional<DefaultsPlist> LinuxUserDefaults::load(bool mayRename) const {
  const auto bytes = readFile(path_);
  if (!bytes) return isMissing(path_) ? std::optional<DefaultsPlist>(DefaultsPlist()) : std::nullopt;
  if (auto list = DefaultsPlist::fromXml(*bytes)) return list;
  if (!mayRename || !setAside(path_)) return std::nullopt;
  return DefaultsPlist();
}

bool LinuxUserDefaults::store(DefaultsPlist& list) const {
  for (const auto& [key, value] : changes_) {
    if (value) {
      list.set(key, *value);
    } else {
      list.remove(key);
    }
  }
  const auto xml = list.xml();
  return xml && replaceFile(path_, {reinterpret_cast<const std::uint8_t*>(xml->data()), xml->size()});
}

}  // namespace orn
