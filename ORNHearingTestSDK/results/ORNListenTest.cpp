#include <ORNHearingTestSDK/results/ORNListenTest.h>

#include <utility>

#include <nlohmann/json.hpp>

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

struct ORNListenTest::Fields {
#define VALUE(field, Setter, key, constant) json field;
#define NUMBER(field, Setter, key, constant) double field = 0;
#define FLAG(field, Setter, key, constant) bool field = false;
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG
};

ORNListenTest::ORNListenTest() : fields_(std::make_unique<Fields>()) {}
ORNListenTest::~ORNListenTest() = default;
ORNListenTest::ORNListenTest(const ORNListenTest& other) : fields_(std::make_unique<Fields>(*other.fields_)) {}
ORNListenTest& ORNListenTest::operator=(const ORNListenTest& other) {
  *fields_ = *other.fields_;
  return *this;
}

#define ACCESSORS(field, Setter, Read, Type)                   \
  Read ORNListenTest::field() const { return fields_->field; } \
  void ORNListenTest::set##Setter(Type value) { fields_->field = std::move(value); }
#define VALUE(field, Setter, key, constant) ACCESSORS(field, Setter, const json&, json)
#define NUMBER(field, Setter, key, constant) ACCESSORS(field, Setter, double, double)
#define FLAG(field, Setter, key, constant) ACCESSORS(field, Setter, bool, bool)
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG
#undef ACCESSORS

std::shared_ptr<ORNListenTest> ORNListenTest::modelObjectWithDictionary(const json& dictionary) {
  return initWithDictionary(dictionary);
}

std::shared_ptr<ORNListenTest> ORNListenTest::initWithDictionary(const json& dictionary) {
  auto test = std::make_shared<ORNListenTest>();
  if (!dictionary.is_object()) return test;
#define VALUE(field, Setter, key, constant) test->fields_->field = jsonMember(dictionary, key);
#define NUMBER(field, Setter, key, constant) test->fields_->field = jsonDouble(jsonMember(dictionary, key));
#define FLAG(field, Setter, key, constant) test->fields_->field = jsonBool(jsonMember(dictionary, key));
#include <ORNHearingTestSDK/results/ORNListenTestFields.inc>
#undef VALUE
#undef NUMBER
#undef FLAG
  return test;
}

json ORNListenTest::dictionaryRepresentation() const {
  json dictionary = json::object();
#define VALUE(field, Setter, key, constant) \
  if (!fields_->field.is_null()) dictionary[key] = fields_->field;
#define NUMBER(field, Setter, key, constant) dictionary[key] = fields_->field;
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
#define VALUE(field, Setter, key, constant) coder[key] = fields_->field;
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
