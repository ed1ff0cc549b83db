#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// A persisted value with its type; a date at least to the second.
using DefaultsValue = std::variant<bool, std::int64_t, double, std::string, std::chrono::system_clock::time_point>;

/// Persistent store of the application's settings, by key. A text comes back as it was set, whatever its bytes: control
/// characters, NUL, or bytes that are not UTF-8. Keys are printable UTF-8. Any thread.
class ORN_EXPORT UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  /// What is stored under a key; nothing if there is none.
  virtual std::optional<DefaultsValue> value(const std::string& key) const = 0;
  /// Stores a value in place of an earlier one.
  virtual void setValue(const std::string& key, DefaultsValue value) = 0;
  virtual void removeValue(const std::string& key) = 0;  ///< Forgets a key.

  /// Writes what was set to the disk. False if that failed; the store in memory holds the values all the same, and what
  /// the disk held before is whole.
  virtual bool synchronize() = 0;
};

}  // namespace orn
