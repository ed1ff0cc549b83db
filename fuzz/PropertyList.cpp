// Any bytes as a property list and as a settings file: what is read is written so that it is read again as it was.

#include <span>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/JsonReading.h>
#include <ORNHearingTestSDK/common/PropertyList.h>
#include <ORNHearingTestSDK/platform/XmlText.h>
#include <ORNHearingTestSDK/platform/linux/DefaultsPlist.h>

#include "fuzz/Expect.h"

namespace {

using namespace orn;
using nlohmann::json;

std::span<const std::uint8_t> bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void writeAndRead(const json& value) {
  const auto list = propertyListOf(value);
  if (!list) return;
  const auto back = dictionaryOfPropertyList(bytesOf(*list));
  fuzz::expect(value.is_object() == back.has_value(), "a dictionary comes back, and nothing else");
  fuzz::expect(!back || *back == value, "a dictionary comes back as it was");
}

void settings(std::span<const std::uint8_t> bytes) {
  const auto read = DefaultsPlist::fromXml(bytes);
  if (!read) return;
  const auto values = read->values();
  DefaultsPlist copy;
  for (const auto& [key, value] : values) {
    if (isXmlText(key)) copy.set(key, DefaultsPlist::kept(value));
  }
  const auto xml = copy.xml();
  fuzz::expect(xml.has_value(), "settings can be written");
  const auto back = DefaultsPlist::fromXml(bytesOf(*xml));
  fuzz::expect(back && back->values() == copy.values(), "settings come back as they were");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::span given(bytes, size);
  if (const auto dictionary = dictionaryOfPropertyList(given)) writeAndRead(*dictionary);
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  if (!isNestedTooDeep(text)) {
    const json value = json::parse(text, nullptr, false);
    if (!value.is_discarded()) writeAndRead(value);
  }
  settings(given);
  return 0;
}
