#include "hearing-service/Fields.h"

#include <ORNHearingTestSDK/platform/Utf8.h>

#include "hearing-service/BadRequest.h"

namespace orn::service {

std::string checkedText(std::string text) {
  if (text.size() > kLongestText) throw BadRequest("a text is longer than 256 bytes");
  if (text.find('\0') != std::string::npos) throw BadRequest("a text holds a NUL");
  if (!isUtf8(text)) throw BadRequest("a text is not UTF-8");
  return text;
}

void requireExactly(const Fields& fields, FieldNames names) {
  for (const std::string_view name : names) {
    if (!fields.contains(name)) throw BadRequest("field " + std::string(name) + " is missing");
  }
  if (fields.size() != names.size()) throw BadRequest("there is an unknown field");
}

const std::string& requiredText(const Fields& fields, std::string_view name) {
  const std::string& text = fields.find(name)->second;
  if (text.empty()) throw BadRequest("field " + std::string(name) + " is empty");
  return text;
}

}  // namespace orn::service
