#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include <ORNHearingTestSDK/platform/PlistXml.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn {

/// A property list, in its XML form, whose root is a dictionary. One thread at a time.
///
/// The form has a type for each type of DefaultsValue. Its dates are whole seconds, and the library that writes them
/// knows the years 1932 to 2069 only; a date outside them, such as an early birthday, is a dictionary with the single
/// integer "secondsSince1970". A text that XML can't hold, since it is not UTF-8 or has control characters other than
/// tab, line feed and carriage return, is a dictionary with the single data "text".
class DefaultsPlist {
 public:
  DefaultsPlist();

  /// Nothing if the bytes are not a property list or its root is not a dictionary.
  static std::optional<DefaultsPlist> fromXml(std::span<const std::uint8_t> bytes);

  /// The list in its XML form; nothing if it can't be written in it.
  std::optional<std::string> xml() const;

  /// The value as it will be read back: a date is rounded down to the second.
  static DefaultsValue kept(DefaultsValue value);

  /// Everything that is a DefaultsValue. Data, lists and other dictionaries are not, but stay in the list.
  std::map<std::string, DefaultsValue> values() const;

  /// The value must be one that kept() gave, and the key a text that XML can hold.
  void set(const std::string& key, const DefaultsValue& value);
  void remove(const std::string& key);

 private:
  explicit DefaultsPlist(PlistNode root) : root_(std::move(root)) {}

  PlistNode root_;
};

}  // namespace orn
