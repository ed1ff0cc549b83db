#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn {

/// A stored value read as an integer, whatever type it was stored in; 0 for a date and for none. Numbers too large for
/// the result saturate.
std::int64_t integerValue(const std::optional<DefaultsValue>& value);

/// A stored value read as a truth value; false for a date and for none.
ORN_EXPORT bool boolValue(const std::optional<DefaultsValue>& value);

/// A stored text; nothing for another type and for none.
ORN_EXPORT std::optional<std::string> textValue(const std::optional<DefaultsValue>& value);

}  // namespace orn
