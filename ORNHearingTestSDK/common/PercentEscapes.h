#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Escapes every byte that is neither a letter, a digit nor one of the others that are left alone, as "%" and two
/// hexadecimal digits (RFC 3986, section 2.1). Any thread.
std::string percentEscaped(std::string_view text, std::string_view leftAlone);

/// The text with every escape replaced by its byte; nothing if a "%" is followed by anything else than two hexadecimal
/// digits, or if the bytes are no UTF-8. Any thread.
ORN_EXPORT std::optional<std::string> percentUnescaped(std::string_view text);

/// What a URL may hold outside its escapes: the unreserved and reserved characters of RFC 3986, but "#", "[" and "]".
inline constexpr std::string_view kLegalInURL = "-._~!$&'()*+,;=:@/?";

/// What may stand in one segment of a path without a meaning of its own.
inline constexpr std::string_view kUnreserved = "-._~";

}  // namespace orn
