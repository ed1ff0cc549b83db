#include <ORNHearingTestSDK/results/ORNListenTest.h>

#include <ORNHearingTestSDK/common/JsonReading.h>
#include <ORNHearingTestSDK/results/ORNListenTestKeys.h>

#define VALUE(field, Setter, key, constant) const char* const constant = key;
#define NUMBER VALUE
#define FLAG VALUE
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG

namespace orn {

using nlohmann::json;

std::shared_ptr<ORNListenTest> ORNListenTest::modelObjectWithDictionary(const json& dictionary) {
  return initWithDictionary(dictionary);
}

std::shared_ptr<ORNListenTest> ORNListenTest::initWithDictionary(const json& dictionary) {
  auto test = std::make_shared<ORNListenTest>();
  if (!dictionary.is_object()) return test;
#define VALUE(field, Setter, key, constant) test->field##_ = jsonMember(dictionary, key);
#define NUMBER(field, Setter, key, constant) test->field##_ = jsonDouble(jsonMember(dictionary, key));
#define FLAG(field, Setter, key, constant) test->field##_ = jsonBool(jsonMember(dictionary, key));
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG
  return test;
}

json ORNListenTest::dictionaryRepresentation() const {
  json dictionary = json::object();
#define VALUE(field, Setter, key, constant) \
  if (!field##_.is_null()) dictionary[key] = field##_;
#define NUMBER(field, Setter, key, constant) dictionary[key] = field##_;
#define FLAG NUMBER
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG
  return dictionary;
}

// An archive holds each field under its dictionary key, so it reads like a dictionary.
std::shared_ptr<ORNListenTest> ORNListenTest::initWithCoder(const json& coder) { return initWithDictionary(coder); }

void ORNListenTest::encodeWithCoder(json& coder) const {
  if (!coder.is_object()) coder = json::object();
    // Empty fields, too, in case the archive held something there.
#define VALUE(field, Setter, key, constant) coder[key] = field##_;
#define NUMBER VALUE
#define FLAG VALUE
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG
}

std::string ORNListenTest::description() const {
  return dictionaryRepresentation().dump(2, ' ', false, json::error_handler_t::replace);
}

std::shared_ptr<ORNListenTest> ORNListenTest::copyWithZone() const { return std::make_shared<ORNListenTest>(*this); }

}  // namespace orn
