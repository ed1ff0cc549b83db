#include <ORNHearingTestSDK/common/PropertyList.h>

#include <plist/plist.h>

#include <limits>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/JsonReading.h>
#include <ORNHearingTestSDK/platform/PlistXml.h>
#include <ORNHearingTestSDK/platform/Utf8.h>
#include <ORNHearingTestSDK/platform/XmlText.h>

namespace orn {
namespace {

using nlohmann::json;

using Node = PlistNode;
using Text = PlistText;

Node nodeOf(const json& value, int depth);

Node listOf(const json& list, int depth) {
  Node node(plist_new_array());
  for (const json& one : list) {
    Node element = nodeOf(one, depth + 1);
    if (!element) return nullptr;
    plist_array_append_item(node.get(), element.release());
  }
  return node;
}

Node dictionaryOf(const json& object, int depth) {
  Node node(plist_new_dict());
  for (const auto& [key, value] : object.items()) {
    Node element = nodeOf(value, depth + 1);
    if (!element || !isXmlText(key)) return nullptr;
    plist_dict_set_item(node.get(), key.c_str(), element.release());
  }
  return node;
}

/// Null for what a property list can't hold; libplist itself would abort on it later.
Node nodeOf(const json& value, int depth) {
  if (depth > kDeepestJson) return nullptr;
  switch (value.type()) {
    case json::value_t::object:
      return dictionaryOf(value, depth);
    case json::value_t::array:
      return listOf(value, depth);
    case json::value_t::string: {
      const auto& text = value.get_ref<const std::string&>();
      return Node(isXmlText(text) ? plist_new_string(text.c_str()) : nullptr);
    }
    case json::value_t::boolean:
      return Node(plist_new_bool(value.get<bool>() ? 1 : 0));
    case json::value_t::number_integer:
      return Node(plist_new_uint(value.get<std::uint64_t>()));
    case json::value_t::number_unsigned: {
      // libplist would write a larger one as negative.
      const auto number = value.get<std::uint64_t>();
      return Node(number > std::numeric_limits<std::int64_t>::max() ? nullptr : plist_new_uint(number));
    }
    case json::value_t::number_float:
      return Node(plist_new_real(value.get<double>()));
    default:
      return nullptr;
  }
}

std::optional<json> jsonOf(plist_t node, int depth);

std::optional<json> jsonOfList(plist_t node, int depth) {
  json list = json::array();
  for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
    auto element = jsonOf(plist_array_get_item(node, i), depth + 1);
    if (!element) return std::nullopt;
    list.push_back(std::move(*element));
  }
  return list;
}

std::optional<json> jsonOfDictionary(plist_t node, int depth) {
  plist_dict_iter position = nullptr;
  plist_dict_new_iter(node, &position);
  const Text iterator(static_cast<char*>(position));
  json object = json::object();
  while (true) {
    char* key = nullptr;
    plist_t value = nullptr;
    plist_dict_next_item(node, position, &key, &value);
    const Text held(key);
    if (!value) return object;
    auto element = jsonOf(value, depth + 1);
    if (!key || !element || !isUtf8(key)) return std::nullopt;
    object[key] = std::move(*element);
  }
}

std::optional<json> jsonOfText(plist_t node) {
  char* text = nullptr;
  plist_get_string_val(node, &text);
  const Text held(text);
  if (!text || !isUtf8(text)) return std::nullopt;
  return json(text);
}

std::optional<json> jsonOfNumber(plist_t node) {
  // libplist keeps one unsigned form for all integers.
  std::uint64_t number = 0;
  plist_get_uint_val(node, &number);
  return json(static_cast<std::int64_t>(number));
}

std::optional<json> jsonOf(plist_t node, int depth) {
  if (depth > kDeepestJson) return std::nullopt;
  switch (plist_get_node_type(node)) {
    case PLIST_DICT:
      return jsonOfDictionary(node, depth);
    case PLIST_ARRAY:
      return jsonOfList(node, depth);
    case PLIST_STRING:
      return jsonOfText(node);
    case PLIST_UINT:
      return jsonOfNumber(node);
    case PLIST_BOOLEAN: {
      std::uint8_t flag = 0;
      plist_get_bool_val(node, &flag);
      return json(flag != 0);
    }
    case PLIST_REAL: {
      double number = 0;
      plist_get_real_val(node, &number);
      return json(number);
    }
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<std::string> propertyListOf(const json& value) {
  const Node root = nodeOf(value, 0);
  return root ? xmlOfPlist(root.get()) : std::nullopt;
}

std::optional<json> dictionaryOfPropertyList(std::span<const std::uint8_t> bytes) {
  const Node root = plistOfXml(bytes);
  if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return std::nullopt;
  return jsonOf(root.get(), 0);
}

}  // namespace orn
