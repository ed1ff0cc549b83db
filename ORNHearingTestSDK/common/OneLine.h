#pragma once

#include <string>
#include <string_view>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// A foreign text as one short line for a person, in UTF-8: a space in place of each control character or line break, a
/// question mark in place of each byte that is not part of a character, and everything beyond 200 bytes cut off. Any
/// thread.
ORN_EXPORT std::string oneLine(std::string_view text);

}  // namespace orn
