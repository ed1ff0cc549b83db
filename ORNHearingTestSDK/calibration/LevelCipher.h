#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// The form in which the service sends a calibration value: the base64 text of the enciphered value, with one more
// character after it, which has no meaning. No state; any thread.

/// For those who make replies: sample services and tests. Empty if the cipher fails, for want of memory.
ORN_EXPORT std::string encipheredLevel(std::string_view value);

/// The value's plain text. Nothing if the text is empty, is not base64, cannot be deciphered or does not hold UTF-8.
ORN_EXPORT std::optional<std::string> decipheredLevel(std::string_view enciphered);

}  // namespace orn
