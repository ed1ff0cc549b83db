#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn {

class DefaultsPlist;

/// Settings in an XML property list, which several processes may share.
///
/// What is set or removed here counts for this object at once and for others after synchronize(), which writes nothing
/// but the keys changed here: what others have stored under other keys stays. What others have stored is seen when this
/// object is made and after synchronize(). Any thread; calls wait while another process is writing.
///
/// - Dates are kept to the second, rounded down when they are set.
/// - A key that XML can't hold (not UTF-8, or with NUL or other control characters) is not taken: setValue() does
///   nothing. A text that XML can't hold is kept all the same, in another form.
/// - Values of other types that the file holds (data, lists, dictionaries) are not seen here but stay in the file.
/// - A file that is not a property list is renamed to end in ".corrupt", or ".corrupt-2" and so on where that is taken;
///   the settings then start out empty.
/// - A file beside it that ends in ".lock" orders the processes; it stays.
class ORN_EXPORT LinuxUserDefaults final : public UserDefaults {
 public:
  /// Reads the file of this absolute path. If there is none or it can't be read, the settings start out empty.
  explicit LinuxUserDefaults(std::string path);
  ~LinuxUserDefaults() override;

  /// $XDG_CONFIG_HOME/APPLICATION/defaults.plist, or below ~/.config where that variable is empty or relative.
  static std::string defaultPath(const std::string& applicationIdentifier);

  std::optional<DefaultsValue> value(const std::string& key) const override;
  void setValue(const std::string& key, DefaultsValue value) override;
  void removeValue(const std::string& key) override;

  /// Brings file and memory together. False if the file can't be read or written, or if something in its place is not a
  /// file; then the file is as it was, and the changes are kept for the next time.
  bool synchronize() override;

 private:
  /// What the file holds; nothing if it can't be read.
  std::optional<DefaultsPlist> load(bool mayRename) const;
  bool store(DefaultsPlist& list) const;

  const std::string path_;
  mutable std::mutex mutex_;
  std::map<std::string, DefaultsValue> stored_;
  std::map<std::string, std::optional<DefaultsValue>> changes_;  // nothing: removed
};

}  // namespace orn
