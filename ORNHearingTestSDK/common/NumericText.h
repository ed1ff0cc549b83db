#pragma once

#include <cstdint>
#include <string_view>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// The leading number of a text, as a phone framework's string reads it: leading white space is skipped, one sign may
// follow, reading stops at the first character that does not belong to the number, and a text that begins with no
// number reads as 0 or false. The locale makes no difference. All of these may be called on any thread and report no
// error.

/// Whether a text begins with a decimal number, which tells "0" from a text that only reads as 0. For the library
/// itself.
bool startsWithNumber(std::string_view text);

/// Decimal integer; one that does not fit saturates.
ORN_EXPORT std::int32_t intValue(std::string_view text);
ORN_EXPORT std::int64_t integerValue(std::string_view text);

/// Decimal number with optional fraction and exponent; no hexadecimal, no "inf", no "nan". A number too large reads as
/// plus or minus HUGE_VAL, one too small as 0.
ORN_EXPORT double doubleValue(std::string_view text);

/// doubleValue narrowed to single precision.
ORN_EXPORT float floatValue(std::string_view text);

/// True if Y, y, T, t or a digit from 1 to 9 comes after white space, a sign and zeros.
ORN_EXPORT bool boolValue(std::string_view text);

}  // namespace orn
