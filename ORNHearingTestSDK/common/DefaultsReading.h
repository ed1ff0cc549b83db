#pragma once

#include <cstdint>
#include <optional>

#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn {

/// A stored value read as an integer, whatever type it was stored in; 0 for a date and for none. Numbers too large for
/// the result saturate.
std::int64_t integerValue(const std::optional<DefaultsValue>& value);

}  // namespace orn
