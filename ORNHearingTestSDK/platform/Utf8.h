#pragma once

#include <string_view>

namespace orn {

/// Whether the text is well-formed UTF-8 by RFC 3629: no overlong forms, no surrogates, nothing past U+10FFFF.
bool isUtf8(std::string_view text);

}  // namespace orn
