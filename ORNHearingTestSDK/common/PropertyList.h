#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// A JSON value as an XML property list. Nothing if the value has no such form: a property list has no null, and its
/// texts no control characters. Values nested too deep and integers past the signed 64 bits count among these. Any
/// thread.
ORN_EXPORT std::optional<std::string> propertyListOf(const nlohmann::json& value);

/// The dictionary that an XML property list holds; nothing if the bytes are none, or hold something else, values that
/// JSON has no form for, or more than 10,000 lists and dictionaries. Any thread.
ORN_EXPORT std::optional<nlohmann::json> dictionaryOfPropertyList(std::span<const std::uint8_t> bytes);

}  // namespace orn
