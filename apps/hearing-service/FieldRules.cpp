#include "hearing-service/FieldRules.h"

#include <charconv>
#include <string>

#include <ORNHearingTestSDK/common/ORNUtils.h>

#include "hearing-service/BadRequest.h"

namespace orn::service {
namespace {

template <class Number>
bool readsWholly(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size();
}

bool isFlag(std::string_view text) { return text == "0" || text == "1"; }

}  // namespace

void requireThreshold(std::string_view text) {
  int db = 0;
  if (text.size() <= 3 && readsWholly(text, db) && db >= -10 && db <= 120) return;
  throw BadRequest("a threshold is not a whole number from -10 to 120");
}

void requireBase(std::string_view text) {
  if (!isFlag(text)) throw BadRequest("base is neither 0 nor 1");
}

void requireGender(std::string_view text) {
  if (!isFlag(text)) throw BadRequest("gender is neither 0 nor 1");
}

void requireBirthday(std::string_view text) {
  if (!ORNUtils::dayFormatter().dateFromString(std::string(text))) {
    throw BadRequest("birthday is not a date of the form yyyyMMdd");
  }
}

}  // namespace orn::service
