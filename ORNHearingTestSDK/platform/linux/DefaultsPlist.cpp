#include <ORNHearingTestSDK/platform/linux/DefaultsPlist.h>

#include <plist/plist.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include <ORNHearingTestSDK/platform/XmlText.h>

namespace orn {
namespace {

using std::chrono::seconds;
using std::chrono::system_clock;

constexpr const char* kDistantDateKey = "secondsSince1970";
constexpr const char* kRawTextKey = "text";
constexpr std::int64_t kPlistEpoch = 978'307'200;  // 2001-01-01, in seconds since 1970
constexpr std::int64_t kEarliest =
    std::chrono::duration_cast<seconds>(system_clock::time_point::min().time_since_epoch()).count();
constexpr std::int64_t kLatest =
    std::chrono::duration_cast<seconds>(system_clock::time_point::max().time_since_epoch()).count();

std::int64_t secondsOf(system_clock::time_point date) {
  return std::max(kEarliest, std::int64_t{std::chrono::floor<seconds>(date.time_since_epoch()).count()});
}

plist_t node(bool value) { return plist_new_bool(value ? 1 : 0); }
plist_t node(std::int64_t value) { return plist_new_uint(static_cast<std::uint64_t>(value)); }
plist_t node(double value) { return plist_new_real(value); }

plist_t node(const std::string& value) {
  if (isXmlText(value)) return plist_new_string(value.c_str());
  plist_t bytes = plist_new_dict();
  plist_dict_set_item(bytes, kRawTextKey, plist_new_data(value.data(), value.size()));
  return bytes;
}

plist_t node(system_clock::time_point date) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t offset = secondsOf(date) - kPlistEpoch;
  // The two limits themselves are what libplist gives for any date beyond its range.
  if (offset > Limits::min() && offset < Limits::max()) return plist_new_date(static_cast<std::int32_t>(offset), 0);
  plist_t distant = plist_new_dict();
  plist_dict_set_item(distant, kDistantDateKey, node(secondsOf(date)));
  return distant;
}

std::int64_t integerIn(plist_t item) {
  std::uint64_t value = 0;
  plist_get_uint_val(item, &value);
  return static_cast<std::int64_t>(value);
}

std::optional<DefaultsValue> dateIn(plist_t item) {
  using Limits = std::numeric_limits<std::int32_t>;
  std::int32_t offset = 0;
  std::int32_t microseconds = 0;
  plist_get_date_val(item, &offset, &microseconds);
  if (offset == Limits::min() || offset == Limits::max()) return std::nullopt;
  return system_clock::time_point(seconds(kPlistEpoch + offset));
}

std::optional<DefaultsValue> distantDateIn(plist_t since1970) {
  const std::int64_t value = integerIn(since1970);
  if (value < kEarliest || value > kLatest) return std::nullopt;
  return system_clock::time_point(seconds(value));
}

std::optional<DefaultsValue> textIn(plist_t item) {
  std::uint64_t length = 0;
  const char* const text = plist_get_string_ptr(item, &length);
  if (!text) return std::nullopt;
  return std::string(text, length);
}

std::optional<DefaultsValue> rawTextIn(plist_t data) {
  std::uint64_t length = 0;
  const char* const bytes = plist_get_data_ptr(data, &length);
  if (!bytes) return std::nullopt;
  return std::string(bytes, length);
}

/// The value in a dictionary that stands for what the form has no type for.
std::optional<DefaultsValue> wrappedIn(plist_t item) {
  if (plist_dict_get_size(item) != 1) return std::nullopt;
  const plist_t date = plist_dict_get_item(item, kDistantDateKey);
  if (PLIST_IS_UINT(date)) return distantDateIn(date);
  const plist_t text = plist_dict_get_item(item, kRawTextKey);
  if (PLIST_IS_DATA(text)) return rawTextIn(text);
  return std::nullopt;
}

std::optional<DefaultsValue> valueIn(plist_t item) {
  std::uint8_t truth = 0;
  double real = 0;
  switch (plist_get_node_type(item)) {
    case PLIST_BOOLEAN:
      plist_get_bool_val(item, &truth);
      return truth != 0;
    case PLIST_UINT:
      return integerIn(item);
    case PLIST_REAL:
      plist_get_real_val(item, &real);
      return real;
    case PLIST_STRING:
      return textIn(item);
    case PLIST_DATE:
      return dateIn(item);
    case PLIST_DICT:
      return wrappedIn(item);
    default:
      return std::nullopt;
  }
}

}  // namespace

DefaultsPlist::DefaultsPlist() : root_(plist_new_dict()) {}

std::optional<DefaultsPlist> DefaultsPlist::fromXml(std::span<const std::uint8_t> bytes) {
  PlistNode root = plistOfXml(bytes);
  if (!PLIST_IS_DICT(root.get())) return std::nullopt;
  return DefaultsPlist(std::move(root));
}

std::optional<std::string> DefaultsPlist::xml() const { return xmlOfPlist(root_.get()); }

DefaultsValue DefaultsPlist::kept(DefaultsValue value) {
  if (const auto* const date = std::get_if<system_clock::time_point>(&value)) {
    return system_clock::time_point(seconds(secondsOf(*date)));
  }
  return value;
}

std::map<std::string, DefaultsValue> DefaultsPlist::values() const {
  std::map<std::string, DefaultsValue> all;
  plist_dict_iter place = nullptr;
  plist_dict_new_iter(root_.get(), &place);
  while (true) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(root_.get(), place, &key, &item);
    const PlistText owned(key);
    if (!key || !item) break;
    if (auto value = valueIn(item)) all.insert_or_assign(key, std::move(*value));
  }
  std::free(place);
  return all;
}

void DefaultsPlist::set(const std::string& key, const DefaultsValue& value) {
  plist_dict_set_item(root_.get(), key.c_str(), std::visit([](const auto& one) { return node(one); }, value));
}

void DefaultsPlist::remove(const std::string& key) { plist_dict_remove_item(root_.get(), key.c_str()); }

}  // namespace orn
