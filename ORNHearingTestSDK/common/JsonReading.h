#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace orn {

// Untyped values read as the type that is wanted. None of these throws, whatever the value is.

/// The value under a key; null if there is none or if `object` is no object.
const nlohmann::json& jsonMember(const nlohmann::json& object, const char* key);

/// Fractions are cut off, numbers too large saturate, booleans read as 0 or 1, texts by their leading number; 0 for
/// everything else.
std::int64_t jsonInteger(const nlohmann::json& value);

/// Numbers read as true if not 0, texts by boolValue; false for everything else.
bool jsonBool(const nlohmann::json& value);

/// Nothing if the value is not a text.
std::optional<std::string> jsonText(const nlohmann::json& value);

}  // namespace orn
