#include <ORNHearingTestSDK/common/JsonReading.h>

#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {
namespace {

using nlohmann::json;

constexpr auto kHighest = std::numeric_limits<std::int64_t>::max();
constexpr auto kLowest = std::numeric_limits<std::int64_t>::min();

std::int64_t saturated(std::uint64_t value) {
  return value > static_cast<std::uint64_t>(kHighest) ? kHighest : static_cast<std::int64_t>(value);
}

}  // namespace

std::int64_t saturated(double value) {
  constexpr double limit = 9223372036854775808.0;  // 2^63
  if (std::isnan(value)) return 0;
  if (value >= limit) return kHighest;
  return value < -limit ? kLowest : static_cast<std::int64_t>(value);
}

bool isNestedTooDeep(std::string_view text) {
  int depth = 0;
  bool isInText = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isInText) {
      if (text[i] == '\\')
        ++i;
      else if (text[i] == '"')
        isInText = false;
    } else if (text[i] == '"') {
      isInText = true;
    } else if (text[i] == '[' || text[i] == '{') {
      if (++depth > kDeepestJson) return true;
    } else if (text[i] == ']' || text[i] == '}') {
      --depth;
    }
  }
  return false;
}

const json& jsonMember(const json& object, const char* key) {
  static const json none;
  if (!object.is_object()) return none;
  const auto found = object.find(key);
  return found == object.end() ? none : *found;
}

std::int64_t jsonInteger(const json& value) {
  switch (value.type()) {
    case json::value_t::boolean:
      return value.get<bool>() ? 1 : 0;
    case json::value_t::number_integer:
      return value.get<std::int64_t>();
    case json::value_t::number_unsigned:
      return saturated(value.get<std::uint64_t>());
    case json::value_t::number_float:
      return saturated(value.get<double>());
    case json::value_t::string:
      return integerValue(std::string_view(value.get_ref<const std::string&>()));
    default:
      return 0;
  }
}

double jsonDouble(const json& value) {
  if (value.is_string()) return doubleValue(value.get_ref<const std::string&>());
  if (value.is_number()) return value.get<double>();
  return value.is_boolean() && value.get<bool>() ? 1 : 0;
}

bool jsonBool(const json& value) {
  if (value.is_string()) return boolValue(std::string_view(value.get_ref<const std::string&>()));
  if (value.is_number_float()) return value.get<double>() != 0;
  return jsonInteger(value) != 0;
}

std::optional<std::string> jsonText(const json& value) {
  if (!value.is_string()) return std::nullopt;
  return value.get_ref<const std::string&>();
}

}  // namespace orn
