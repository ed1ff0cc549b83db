#pragma once

#include <string>
#include <string_view>

namespace orn::service {

/// The text with its percent escapes (RFC 3986) resolved, once; "+" stays a plus. Throws BadRequest on an escape
/// without two hexadecimal digits, and if the result is not UTF-8.
std::string percentDecoded(std::string_view text);

}  // namespace orn::service
