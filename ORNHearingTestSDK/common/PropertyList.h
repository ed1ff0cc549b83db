#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace orn {

/// A JSON value as an XML property list. Nothing if the value has no such form: a property list has no null, and its
/// texts no control characters. Values nested too deep count among these. Any thread.
std::optional<std::string> propertyListOf(const nlohmann::json& value);

/// The dictionary that a property list holds; nothing if the bytes are none, or hold something else or values that JSON
/// has no form for. Any thread.
std::optional<nlohmann::json> dictionaryOfPropertyList(std::span<const std::uint8_t> bytes);

}  // namespace orn
