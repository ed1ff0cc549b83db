#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace orn {

/// Lists and dictionaries within each other; no reply of the service goes deeper.
inline constexpr int kDeepestJson = 64;

/// Whether a JSON text goes deeper than that. Copies of a value go as deep as it is nested, on the stack.
bool isNestedTooDeep(std::string_view text);

/// A number's whole part; numbers too large saturate, and NaN is 0.
std::int64_t saturated(double value);

// Untyped values read as the type that is wanted. None of these throws, whatever the value is.

/// The value under a key; null if there is none or if `object` is not an object.
const nlohmann::json& jsonMember(const nlohmann::json& object, const char* key);

/// Fractions are cut off, numbers too large saturate, booleans read as 0 or 1, texts by their leading number; 0 for
/// everything else.
std::int64_t jsonInteger(const nlohmann::json& value);

/// Booleans read as 0 or 1, texts by their leading number; 0 for everything else.
double jsonDouble(const nlohmann::json& value);

/// Numbers read as true if not 0, texts by boolValue; false for everything else.
bool jsonBool(const nlohmann::json& value);

/// Nothing if the value is not a text.
std::optional<std::string> jsonText(const nlohmann::json& value);

}  // namespace orn
