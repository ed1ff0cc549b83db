#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/results/ORNListenTest.h>
#include <ORNHearingTestSDK/results/TestTime.h>

namespace orn {
namespace {

using nlohmann::json;

const std::string kNumbers[] = {"leftResult_d", "leftScore",  "score", "rightScore",
                                "rightResul_d", "createDate", "base"};
const std::string kFlags[] = {"diagnose", "calibration"};
const std::string kValues[] = {
    "correctName",      "id",          "left1000hz",   "ordinaryEmail", "personID",    "left125hz",     "right4000hz",
    "ordinaryUserID",   "rightResult", "leftResult",   "left2000hz",    "left250hz",   "grade",         "left500hz",
    "deviceVolumeIOS",  "right8000hz", "right500hz",   "right125hz",    "noise",       "ordinaryPhone", "right2000hz",
    "ordinaryUserName", "right250hz",  "correctModel", "personName",    "right1000hz", "left4000hz",    "headset",
    "versions",         "left8000hz"};

const auto record = &ORNListenTest::modelObjectWithDictionary;

/// A value of its own under every key.
json fullDictionary() {
  json dictionary;
  double number = 0.25;
  for (const auto& key : kValues) dictionary[key] = "value of " + key;
  for (const auto& key : kNumbers) dictionary[key] = number += 1;
  for (const auto& key : kFlags) dictionary[key] = true;
  dictionary["noise"] = {{"deep", {1, nullptr, {{"deeper", "x"}}}}};
  dictionary["left125hz"] = 20;  // a number under a text stays one
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
  json nulls = fullDictionary(), empty;
  for (json& value : nulls) value = nullptr;
  for (const auto& key : kNumbers) empty[key] = 0.0;
  for (const auto& key : kFlags) empty[key] = false;
  for (const json& dictionary : {json::object(), nulls, json::array({1, 2}), json(5), json("text"), json()}) {
    EXPECT_EQ(record(dictionary)->dictionaryRepresentation(), empty) << dictionary;
  }
}

TEST(ORNListenTest, ConvertsNumbersAndFlags) {
  const struct {
    json sent;
    double number;
    bool flag;
  } table[] = {{0.5, 0.5, true},
               {"0", 0, false},
               {"3.5e2x", 350, true},
               {true, 1, true},
               {"true", 0, true},
               {"", 0, false},
               {-2, -2, true},
               {json::array({1}), 0, false},
               {"1767225600123", 1'767'225'600'123, true}};
  for (const auto& row : table) {
    const auto test = record({{"createDate", row.sent}, {"diagnose", row.sent}});
    EXPECT_EQ(test->createDate(), row.number) << row.sent;
    EXPECT_EQ(test->diagnose(), row.flag) << row.sent;
  }
}

TEST(ORNListenTest, ATimeIsShownAsItIsOrNotAtAll) {
  setenv("TZ", "UTC", 1);
  tzset();
  const std::pair<double, const char*> table[] = {{0, "1970-01-01 00:00:00"},
                                                  {-1, "1969-12-31 23:59:59"},
                                                  {1'767'225'600'999, "2026-01-01 00:00:00"},
                                                  {9.3e12, "2264-09-14 21:20:00"},
                                                  {1e17, "3170843-11-07 09:46:40"},
                                                  {1e22, ""},
                                                  {-1e99, ""},
                                                  {NAN, ""}};
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
