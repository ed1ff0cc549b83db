#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Of ASCII, whatever the locale.
constexpr bool isLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// Escapes every byte that is neither a letter, a digit nor one of the others that are left alone, as "%" and two
/// hexadecimal digits (RFC 3986, section 2.1). Any thread.
std::string percentEscaped(std::string_view text, std::string_view leftAlone);

/// The text with every escape replaced by its byte; nothing if a "%" is followed by anything but two hexadecimal
/// digits, or if the bytes are not UTF-8. Any thread.
ORN_EXPORT std::optional<std::string> percentUnescaped(std::string_view text);

/// What a URL may hold outside its escapes besides letters and digits: the unreserved and reserved characters of RFC
/// 3986, except "#", "[" and "]".
inline constexpr std::string_view kLegalInURL = "-._~!$&'()*+,;=:@/?";

/// What may stand, besides letters and digits, in one segment of a path and has no meaning of its own there.
inline constexpr std::string_view kUnreserved = "-._~";

}  // namespace orn
