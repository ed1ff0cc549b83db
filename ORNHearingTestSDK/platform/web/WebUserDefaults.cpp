#include <ORNHearingTestSDK/platform/web/WebUserDefaults.h>

#include <emscripten/emscripten.h>

#include <cstdlib>
#include <utility>
#include <vector>
#include <nlohmann/json.hpp>

// Local storage holds texts: each character stands for a byte.
// clang-format off
EM_JS(int, orn_web_store, (const char* key, const std::uint8_t* bytes, int length), {
  let text = "";
  for (let i = 0; i < length; ++i) text += String.fromCharCode(HEAPU8[bytes + i]);
  try {
    localStorage.setItem(UTF8ToString(key), text);
    return 1;
  } catch (error) {
    return 0;
  }
});
EM_JS(std::uint8_t*, orn_web_stored, (const char* key, int* length), {
  let text = "";
  try {
    text = localStorage.getItem(UTF8ToString(key)) || "";
  } catch (error) {
    // The browser keeps nothing for this page.
  }
  const at = _malloc(text.length + 1);
  for (let i = 0; i < text.length; ++i) HEAPU8[at + i] = text.charCodeAt(i);
  HEAP32[length >> 2] = text.length;
  return at;
});
// clang-format on

namespace orn {
namespace {

using nlohmann::json;
using std::chrono::system_clock;

// With the index of the value's type in the variant, so that each value comes back with its own type.
json jsonOf(const DefaultsValue& value) {
  const auto content = [](const auto& one) -> json {
    if constexpr (std::is_same_v<std::decay_t<decltype(one)>, system_clock::time_point>)
      return one.time_since_epoch().count();
    else
      return one;
  };
  return json::array({value.index(), std::visit(content, value)});
}

DefaultsValue valueOf(const json& stored) {
  const json& content = stored.at(1);
  switch (stored.at(0).get<int>()) {
    case 0:
      return content.get<bool>();
    case 1:
      return content.get<std::int64_t>();
    case 2:
      return content.get<double>();
    case 3:
      return content.get<std::string>();
    default:
      return system_clock::time_point(system_clock::duration(content.get<system_clock::rep>()));
  }
}

}  // namespace

WebUserDefaults::WebUserDefaults(std::string storageKey) : storageKey_(std::move(storageKey)) {
  int length = 0;
  std::uint8_t* const bytes = orn_web_stored(storageKey_.c_str(), &length);
  const json stored = json::from_msgpack(bytes, bytes + length, true, false);
  std::free(bytes);
  if (!stored.is_object()) return;
  for (const auto& [key, value] : stored.items()) {
    try {
      values_.insert_or_assign(key, valueOf(value));
    } catch (const json::exception&) {
      // Not written by this class: there are no values.
    }
  }
}

std::optional<DefaultsValue> WebUserDefaults::value(const std::string& key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void WebUserDefaults::setValue(const std::string& key, DefaultsValue value) {
  values_.insert_or_assign(key, std::move(value));
}

void WebUserDefaults::removeValue(const std::string& key) { values_.erase(key); }

bool WebUserDefaults::synchronize() {
  json all = json::object();
  for (const auto& [key, value] : values_) all[key] = jsonOf(value);
  const std::vector<std::uint8_t> bytes = json::to_msgpack(all);
  return orn_web_store(storageKey_.c_str(), bytes.data(), static_cast<int>(bytes.size())) != 0;
}

}  // namespace orn
