#include <ORNHearingTestSDK/common/NumericText.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>

#include <ORNHearingTestSDK/platform/PointForDecimals.h>

namespace orn {
namespace {

constexpr std::string_view kDigits = "0123456789";

struct SignedText {
  bool negative;
  std::string_view rest;
};

SignedText withoutSpaceAndSign(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return {negative, text};
}

template <typename Integer>
Integer leadingInteger(std::string_view text) {
  auto [negative, rest] = withoutSpaceAndSign(text);
  if (rest.starts_with('-')) return 0;  // a second sign, which from_chars would take
  // The sign goes back on, because the lowest integer has no positive counterpart.
  if (negative) rest = {rest.data() - 1, rest.size() + 1};
  Integer value = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
  if (error != std::errc::result_out_of_range) return value;
  return negative ? std::numeric_limits<Integer>::min() : std::numeric_limits<Integer>::max();
}

bool beginsNumber(std::string_view text) {
  if (text.starts_with('.')) text.remove_prefix(1);
  return !text.empty() && kDigits.find(text.front()) != std::string_view::npos;
}

std::size_t digitsFrom(std::string_view text, std::size_t at) {
  return std::min(text.find_first_not_of(kDigits, at), text.size());
}

/// The leading number: digits, a point and digits, an exponent if it has digits.
std::string_view leadingNumber(std::string_view text) {
  std::size_t end = digitsFrom(text, 0);
  if (text.substr(end).starts_with('.')) end = digitsFrom(text, end + 1);
  if (text.find_first_of("eE", end) != end) return text.substr(0, end);
  const std::size_t exponent = end + (text.find_first_of("+-", end + 1) == end + 1 ? 2 : 1);
  return text.substr(0, digitsFrom(text, exponent) > exponent ? digitsFrom(text, exponent) : end);
}

}  // namespace

std::int32_t intValue(std::string_view text) { return leadingInteger<std::int32_t>(text); }

std::int64_t integerValue(std::string_view text) { return leadingInteger<std::int64_t>(text); }

bool startsWithNumber(std::string_view text) { return beginsNumber(withoutSpaceAndSign(text).rest); }

double doubleValue(std::string_view text) {
  const auto [negative, rest] = withoutSpaceAndSign(text);
  if (!beginsNumber(rest)) return 0;
  // Not every standard library has std::from_chars for it.
  const PointForDecimals point;
  const double value = std::strtod(std::string(leadingNumber(rest)).c_str(), nullptr);
  return negative ? -value : value;
}

float floatValue(std::string_view text) { return static_cast<float>(doubleValue(text)); }

bool boolValue(std::string_view text) {
  const auto rest = withoutSpaceAndSign(text).rest;
  const auto next = rest.find_first_not_of('0');
  return next != std::string_view::npos && std::string_view("YyTt123456789").find(rest[next]) != std::string_view::npos;
}

}  // namespace orn
