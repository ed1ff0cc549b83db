#pragma once

#include <cstddef>
#include <string_view>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Length in bytes of the well-formed character that a text, which is not empty, begins with; 0 if it begins with none.
ORN_EXPORT std::size_t utf8Length(std::string_view text);

/// Whether the text is well-formed UTF-8 by RFC 3629: no overlong forms, no surrogates, nothing past U+10FFFF.
ORN_EXPORT bool isUtf8(std::string_view text);

}  // namespace orn
