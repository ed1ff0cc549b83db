#include "hearing-service/RequestBody.h"

#include <utility>
#include <vector>
#include <nlohmann/json.hpp>

#include "hearing-service/BadRequest.h"
#include "hearing-service/PercentDecoding.h"

namespace orn::service {
namespace {

using EscapedField = std::pair<std::string_view, std::string>;

std::vector<EscapedField> escapedFields(std::string_view body) {
  if (body.ends_with('&')) body.remove_suffix(1);
  std::vector<EscapedField> fields;
  for (bool more = !body.empty(); more;) {
    const auto end = body.find('&');
    const std::string_view piece = body.substr(0, end);
    const auto equals = piece.find('=');
    if (equals != std::string_view::npos) {
      fields.emplace_back(piece.substr(0, equals), piece.substr(equals + 1));
    } else if (fields.empty()) {
      throw BadRequest("the body is not a form");
    } else {
      fields.back().second.append("&").append(piece);
    }
    more = end != std::string_view::npos;
    if (more) body.remove_prefix(end + 1);
  }
  return fields;
}

}  // namespace

Fields formFields(std::string_view body) {
  Fields fields;
  for (const auto& [name, value] : escapedFields(body)) {
    if (!fields.emplace(percentDecoded(name), checkedText(percentDecoded(value))).second) {
      throw BadRequest("a field comes twice");
    }
  }
  return fields;
}

Fields jsonFields(std::string_view body) {
  std::size_t names = 0;
  const auto countNames = [&names](int, nlohmann::json::parse_event_t event, const nlohmann::json&) {
    names += event == nlohmann::json::parse_event_t::key;
    return true;
  };
  const auto object = nlohmann::json::parse(body, countNames, false);
  if (!object.is_object()) throw BadRequest("the body is not a JSON object");

  Fields fields;
  for (const auto& [name, value] : object.items()) {
    if (!value.is_string()) throw BadRequest("a field is not a text");
    fields.emplace(name, checkedText(value.get<std::string>()));
  }
  if (names != fields.size()) throw BadRequest("a field comes twice");
  return fields;
}

}  // namespace orn::service
