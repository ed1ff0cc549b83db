#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <ORNHearingTestSDK/common/Bytes.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// Base64 with the standard alphabet and padding (RFC 4648, section 4). No state; any thread.

/// Strict: nothing if the text holds white space or any other foreign character, or if its padding is wrong. Bits left
/// unused by the last character may have any value. An empty text gives empty bytes.
ORN_EXPORT std::optional<Bytes> decodeBase64(std::string_view text);

ORN_EXPORT std::string encodeBase64(std::span<const std::uint8_t> bytes);

}  // namespace orn
