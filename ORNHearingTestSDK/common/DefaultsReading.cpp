#include <ORNHearingTestSDK/common/DefaultsReading.h>

#include <ORNHearingTestSDK/common/JsonReading.h>
#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {
namespace {

struct AsInteger {
  std::int64_t operator()(bool value) const { return value ? 1 : 0; }
  std::int64_t operator()(std::int64_t value) const { return value; }
  std::int64_t operator()(const std::string& value) const { return integerValue(std::string_view(value)); }
  std::int64_t operator()(std::chrono::system_clock::time_point) const { return 0; }
  std::int64_t operator()(double value) const { return saturated(value); }
};

}  // namespace

std::int64_t integerValue(const std::optional<DefaultsValue>& value) {
  return value ? std::visit(AsInteger{}, *value) : 0;
}

bool boolValue(const std::optional<DefaultsValue>& value) {
  if (!value) return false;
  if (const auto* text = std::get_if<std::string>(&*value)) return boolValue(std::string_view(*text));
  if (const auto* number = std::get_if<double>(&*value)) return *number != 0;
  return integerValue(value) != 0;
}

std::optional<std::string> textValue(const std::optional<DefaultsValue>& value) {
  const auto* text = value ? std::get_if<std::string>(&*value) : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

}  // namespace orn
