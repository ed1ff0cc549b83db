#include <gmock/gmock.h>

#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>

#include "simulation/calibration/SampleCalibration.h"
#include "tests/service/ClientAndService.h"

namespace orn::service {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using namespace std::chrono_literals;

TEST_F(ServiceTest, CalibrationOfAnyHardwareIsTheSampleOneUnderItsName) {
  const std::tuple<const char*, std::string_view, json> table[] = {
      {"correct_name=Phone1,1&mac=01:02:03:04:05:06&appkey=&",
       simulation::sampleAudiometerReply(),
       {{"correct_name", "Phone1,1"}, {"mac", "01:02:03:04:05:06"}}},
      {"appkey=k&earplug_model=Model%20%E8%80%B3&correct_name=Phone1,1",
       simulation::sampleEarphonesReply(),
       {{"correct_name", "Phone1,1"}, {"earplug_model", "Model \u8033"}}}};
  for (const auto& [body, sample, names] : table) {
    json expected = json::parse(sample);
    for (json& record : expected["deviceVolumeIOS"]) record.update(names);
    EXPECT_EQ(answer(kCalibration, body), expected);
  }
  const json series1 = answer(kCalibration, "mac=11:11:11:11:11:11&appkey=k&correct_name=x");
  EXPECT_EQ(audiometerRecords(*ORNDeviceCorrect::parse(series1.dump())).ab->batch(), 1);
}

TEST_F(ServiceTest, CalibrationTakesValuesThatClientsSendUnescaped) {
  for (const auto& [sent, meant] : {std::pair("A+B", "A+B"), std::pair("A=B==", "A=B=="), std::pair("A&B", "A&B"),
                                    std::pair("A%20&%20B&", "A & B&"), std::pair("50%25", "50%"),
                                    std::pair("%2525", "%25"), std::pair("%26x%3D1", "&x=1")}) {
    const json reply = answer(kCalibration, std::string("correct_name=c&appkey=k&earplug_model=") + sent + "&");
    EXPECT_EQ(reply["deviceVolumeIOS"][0]["earplug_model"], meant) << reply;
  }
}

TEST_F(ServiceTest, TellsThatItIsHealthyByGetAlone) {
  const Reply reply = ask(service_->port(), "/health", "", "GET");
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.json(), (json{{"rspCode", 0}, {"rspDesc", "ok"}, {"version", "ORNHearingTestSDK 1.0"}}));
  EXPECT_EQ(answer("/health", "").at("rspCode"), 1);
}

TEST_F(ServiceTest, RegistrationReplacesTheProfileOfTheSameUserAndKey) {
  EXPECT_EQ(answer(kRegister, profile().dump(4)).at("rspCode"), 0);
  EXPECT_EQ(answer(kRegister, profile({{"sdkKey", "other"}, {"username", ""}}).dump()).at("rspCode"), 0);
  EXPECT_EQ(answer(kRegister, profile({{"username", "\u674e"}, {"gender", "0"}}).dump()).at("rspCode"), 0);
  EXPECT_THAT(rows("SELECT appKey, userId, sdkCode, gender, phone, birthday, username FROM profiles ORDER BY 1"),
              ElementsAre(ElementsAre("k", "u", "Phone1,1", "0", "555", "19800305", "\u674e"),
                          ElementsAre("other", "u", "Phone1,1", "1", "555", "19800305", "")));
}

TEST_F(ServiceTest, HistoryGivesBackWhatWasSubmitted) {
  start({.now = [] { return std::chrono::system_clock::time_point(1'700'000'000'123ms); }});
  const json sent = submission({{"left125hz", "-1"}, {"right8000hz", "-10"}, {"base", "1"}, {"headset", ""}});
  EXPECT_EQ(answer(kSubmit, sent.dump(2)).at("rspCode"), 0);
  const auto tests = history();
  ASSERT_EQ(tests.size(), 1U);
  json want = sent;
  want.update({{"id", "1"}, {"createDate", 1'700'000'000'123.0}, {"base", 1}});
  for (const auto& [key, value] : tests[0].items()) {
    const bool isEmpty = value.is_null() || value == 0.0 || value == false;
    EXPECT_TRUE(want.contains(key) ? value == want[key] : isEmpty) << key << ": " << value;
  }
  EXPECT_EQ(tests[0].size(), 39U);
}

TEST_F(ServiceTest, HistoryIsInTheOrderOfSubmissionEvenIfTheClockGoesBack) {
  for (const auto clock : {9000ms, 5000ms, 5000ms, 9001ms, 9500ms}) {
    start({.now = [clock] { return std::chrono::system_clock::time_point(clock); }});
    answer(kSubmit, submission({{"headset", std::to_string(clock.count())}}).dump());
  }
  std::vector<std::pair<std::string, double>> order;
  for (const json& test : history()) order.emplace_back(test["headset"], test["createDate"]);
  EXPECT_THAT(order, ElementsAre(std::pair("9000", 9000), std::pair("5000", 9001), std::pair("5000", 9002),
                                 std::pair("9001", 9003), std::pair("9500", 9500)));
}

TEST_F(ServiceTest, ATextIsStoredAsItIsWhateverItSays) {
  for (const auto& [escaped, meant] :
       {std::pair("%2E%2E", ".."), std::pair("..", ".."), std::pair("a%2Fb", "a/b"), std::pair("%252F", "%2F"),
        std::pair("a+b", "a+b"), std::pair("%E6%9D%8E", "\u674e"), std::pair("a%3Fb%23", "a?b#"),
        std::pair("x'%20OR%20'1'='1", "x' OR '1'='1")}) {
    const std::string target = std::string("/vrdnx/user/sdkJonDiagnose2/") + escaped + "/key%2F" + escaped;
    EXPECT_EQ(answer(target, submission().dump()).at("rspCode"), 0) << escaped;
    EXPECT_THAT(rows("SELECT userId, appKey FROM tests ORDER BY id DESC LIMIT 1"),
                ElementsAre(ElementsAre(meant, std::string("key/") + meant)));
  }
  const std::string sql = "'); DROP TABLE tests; DELETE FROM profiles; --\";\\";
  answer(kRegister, profile({{"sdkUseId", sql}, {"username", sql}, {"phone", sql}}).dump());
  answer(kSubmit, submission({{"headset", sql}, {"correctName", sql}}).dump());
  for (const char* other : {"' OR 1=1 --", "U"}) EXPECT_EQ(history(other).size(), 0U);
  EXPECT_EQ(history("k", "u").size(), 0U);
  EXPECT_THAT(rows("SELECT headset, correctName FROM tests WHERE userId = 'u'"), ElementsAre(ElementsAre(sql, sql)));
  EXPECT_THAT(rows("SELECT userId, username, phone FROM profiles"), ElementsAre(ElementsAre(sql, sql, sql)));
}

}  // namespace
}  // namespace orn::service
