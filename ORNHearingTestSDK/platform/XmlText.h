#pragma once

#include <string_view>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Whether an XML 1.0 document can hold this text: UTF-8, and only characters of its production Char. Any thread.
ORN_EXPORT bool isXmlText(std::string_view text);

}  // namespace orn
