#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/results/ORNListenTest.h>
#include <ORNHearingTestSDK/results/TestTime.h>

namespace orn {
namespace {

using nlohmann::json;

enum Kind { Value, Number, Flag };

struct Field {
  std::string key;
  Kind kind;
};

/// In the order of the record; "#" marks a number and "?" a flag.
const std::string kKeys =
    "correctName id left1000hz ordinaryEmail personID leftResult_d# left125hz right4000hz leftScore# diagnose? score# "
    "ordinaryUserID rightResult leftResult left2000hz left250hz grade rightScore# rightResul_d# left500hz "
    "deviceVolumeIOS right8000hz right500hz right125hz noise ordinaryPhone right2000hz createDate# ordinaryUserName "
    "base# right250hz correctModel personName right1000hz calibration? left4000hz headset versions left8000hz";

std::vector<Field> fieldsOf(const std::string& keys) {
  std::vector<Field> fields;
  std::istringstream words(keys);
  for (std::string word; words >> word;) {
    const Kind kind = word.back() == '#' ? Number : word.back() == '?' ? Flag : Value;
    fields.push_back({kind == Value ? word : word.substr(0, word.size() - 1), kind});
  }
  return fields;
}

const std::vector<Field> kFields = fieldsOf(kKeys);

const auto record = &ORNListenTest::modelObjectWithDictionary;

/// A value of its own under every key.
json fullDictionary() {
  json dictionary;
  double number = 0.25;
  for (const Field& field : kFields) {
    number += 1;
    if (field.kind == Value) dictionary[field.key] = "value of " + field.key;
    if (field.kind == Number) dictionary[field.key] = number;
    if (field.kind == Flag) dictionary[field.key] = true;
  }
  dictionary["noise"] = {{"deep", {1, nullptr, {{"deeper", "x"}}}}};
  dictionary["left125hz"] = 20;  // a number under a text stays one
  return dictionary;
}

json emptyRepresentation() {
  json dictionary = json::object();
  for (const Field& field : kFields) {
    if (field.kind == Number) dictionary[field.key] = 0.0;
    if (field.kind == Flag) dictionary[field.key] = false;
  }
  return dictionary;
}

TEST(ORNListenTest, EveryFieldComesBackUnderItsKey) {
  json sent = fullDictionary();
  sent["rightResult_d"] = 3.5;  // the correctly spelt key is no key
  EXPECT_EQ(record(sent)->dictionaryRepresentation(), fullDictionary());
  EXPECT_EQ(json::parse(record(sent)->description()), fullDictionary());
  EXPECT_EQ(record(sent)->copyWithZone()->dictionaryRepresentation(), fullDictionary());
  EXPECT_EQ(record({{"id", "17"}})->internalBaseClassIdentifier(), "17");
}

TEST(ORNListenTest, NullAndAbsentValuesAreEmpty) {
  json nulls;
  for (const Field& field : kFields) nulls[field.key] = nullptr;
  for (const json& dictionary : {json::object(), nulls, json::array({1, 2}), json(5), json("text"), json()}) {
    EXPECT_EQ(record(dictionary)->dictionaryRepresentation(), emptyRepresentation()) << dictionary;
  }
}

TEST(ORNListenTest, ConvertsNumbersAndFlags) {
  const struct {
    json sent;
    double number;
    bool flag;
  } table[] = {
      {0.5, 0.5, true},
      {"0", 0, false},
      {"3.5e2x", 350, true},
      {true, 1, true},
      {"true", 0, true},
      {"", 0, false},
      {json::array({1}), 0, false},
      {-2, -2, true},
      {"1767225600123", 1'767'225'600'123, true},
  };
  for (const auto& row : table) {
    const auto test = record({{"createDate", row.sent}, {"diagnose", row.sent}});
    EXPECT_EQ(test->createDate(), row.number) << row.sent;
    EXPECT_EQ(test->diagnose(), row.flag) << row.sent;
  }
}

TEST(ORNListenTest, ATimeIsShownAsItIsOrNotAtAll) {
  setenv("TZ", "UTC", 1);
  tzset();
  const std::pair<double, const char*> table[] = {
      {0, "1970-01-01 00:00:00"},
      {-1, "1969-12-31 23:59:59"},
      {1'767'225'600'999, "2026-01-01 00:00:00"},
      {9.3e12, "2264-09-14 21:20:00"},
      {-9.3e12, "1675-04-18 02:40:00"},
      {1e17, "3170843-11-07 09:46:40"},
      {1e22, ""},
      {-1e99, ""},
      {NAN, ""},
  };
  for (const auto& [createDate, text] : table) EXPECT_EQ(testTimeText(createDate), text) << createDate;
  unsetenv("TZ");
  tzset();
}

TEST(ORNListenTest, ArchiveRoundTrip) {
  json archive = {{"another object's", 1}, {"right125hz", "stale"}};
  json sent = fullDictionary();
  sent.erase("right125hz");
  record(sent)->encodeWithCoder(archive);
  json list = json::array({1});
  record(sent)->encodeWithCoder(list);
  EXPECT_EQ(ORNListenTest::initWithCoder(list)->dictionaryRepresentation(), sent) << "what is no archive becomes one";
  EXPECT_EQ(archive.at("another object's"), 1);
  EXPECT_EQ(ORNListenTest::initWithCoder(archive)->dictionaryRepresentation(), sent);
}

}  // namespace
}  // namespace orn
