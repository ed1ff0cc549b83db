#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/results/HistoryScores.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>
#include <ORNHearingTestSDK/results/TestTime.h>

namespace orn {
namespace {

using nlohmann::json;

const auto record = &ORNListenTest::modelObjectWithDictionary;

/// A test as the service sends it, with a different value under every key. "rightResul_d" is the key.
const json kStored = json::parse(R"({
  "id": "17", "createDate": 1.5, "base": 2.5, "calibration": true, "diagnose": true, "versions": "v", "grade": "g",
  "left125hz": 20, "left250hz": "21", "left500hz": "22", "left1000hz": "23", "left2000hz": "24", "left4000hz": "25",
  "left8000hz": "26", "right125hz": "30", "right250hz": "31", "right500hz": "32", "right1000hz": "33",
  "right2000hz": "34", "right4000hz": "35", "right8000hz": "36", "leftResult": "l", "leftResult_d": 3.5,
  "leftScore": 4.5, "rightResult": "r", "rightResul_d": 5.5, "rightScore": 6.5, "score": 7.5, "headset": "h",
  "noise": {"deep": [1, null, {"deeper": "x"}]}, "deviceVolumeIOS": "dv", "correctName": "cn", "correctModel": "cm",
  "personID": "pi", "personName": "pn", "ordinaryUserID": "ui", "ordinaryUserName": "un", "ordinaryPhone": "up",
  "ordinaryEmail": "ue"})");

TEST(ORNListenTest, EveryFieldComesBackUnderItsKey) {
  json sent = kStored;
  sent["rightResult_d"] = 8.5;  // the correctly spelt key is not a key
  const auto test = record(sent);
  EXPECT_EQ(test->dictionaryRepresentation(), kStored);
  EXPECT_EQ(json::parse(test->description()), kStored);
  EXPECT_EQ(test->copyWithZone()->dictionaryRepresentation(), kStored);
  for (const bool isLeft : {true, false}) {
    int threshold = isLeft ? 20 : 30;
    const EarResult ear = earResultOf(*test, isLeft);
    for (const int hz : kToneFrequencies) EXPECT_EQ(ear.at(std::to_string(hz) + "hz"), std::to_string(threshold++));
  }
}

TEST(ORNListenTest, NullAndAbsentValuesAreEmpty) {
  json nulls, empty;
  for (const auto& [key, value] : kStored.items()) {
    nulls[key] = nullptr;
    if (value.is_number_float()) empty[key] = 0.0;
    if (value.is_boolean()) empty[key] = false;
  }
  for (const json& dictionary : {json::object(), nulls, json::array({1, 2}), json(5), json("text"), json()}) {
    EXPECT_EQ(record(dictionary)->dictionaryRepresentation(), empty) << dictionary;
  }
}

TEST(ORNListenTest, ReadsANumberFromWhateverWasSent) {
  const std::pair<json, double> table[] = {
      {0.5, 0.5}, {"3.5e2x", 350},       {true, 1}, {"true", 0},
      {"", 0},    {json::array({1}), 0}, {-2, -2},  {"1767225600123", 1'767'225'600'123}};
  for (const auto& [sent, number] : table) EXPECT_EQ(record({{"createDate", sent}})->createDate(), number) << sent;
}

TEST(ORNListenTest, ATimeIsShownAsItIsOrNotAtAll) {
  setenv("TZ", "UTC", 1);
  tzset();
  const std::pair<double, const char*> table[] = {{-1, "1969-12-31 23:59:59"},
                                                  {1'767'225'600'999, "2026-01-01 00:00:00"},
                                                  {9.3e12, "2264-09-14 21:20:00"},
                                                  {1e17, "3170843-11-07 09:46:40"},
                                                  {1e22, ""},
                                                  {-1e99, ""},
                                                  {NAN, ""}};
  for (const auto& [createDate, text] : table) EXPECT_EQ(testTimeText(createDate), text) << createDate;
}

TEST(ORNListenTest, ArchiveRoundTrip) {
  json archive = {{"another object's", 1}, {"right125hz", "stale"}}, list = json::array({1}), sent = kStored;
  sent.erase("right125hz");
  record(sent)->encodeWithCoder(archive);
  EXPECT_EQ(archive.at("another object's"), 1);
  EXPECT_EQ(ORNListenTest::initWithCoder(archive)->dictionaryRepresentation(), sent);
  record(sent)->encodeWithCoder(list);
  EXPECT_EQ(ORNListenTest::initWithCoder(list)->dictionaryRepresentation(), sent) << "what is no archive becomes one";
}

}  // namespace
}  // namespace orn
