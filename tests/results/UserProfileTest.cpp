#include <chrono>
#include <cstdlib>
#include <ctime>

#include <ORNHearingTestSDK/common/DateText.h>
#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

#include "ServiceScript.h"

namespace orn {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using nlohmann::json;
using std::chrono::sys_days;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using Date = std::chrono::system_clock::time_point;

struct SetAppUserID : testing::Test, ServiceScript {
  std::vector<std::string> heard;

  void call(const std::optional<std::string>& id, const std::optional<std::string>& name, bool isWomen,
            std::optional<Date> birthday, const std::optional<std::string>& phone) {
    ORNHearingTest::setAppUserID(id, name, isWomen, birthday, phone,
                                 [this](const std::optional<Error>& error) { heard.push_back(told(error)); });
  }

  json sent() const { return json::parse(machine.urlSession->requests().back().body); }

  std::vector<std::optional<DefaultsValue>> stored() const {
    std::vector<std::optional<DefaultsValue>> all;
    for (const char* key : {"USERID", "USERSEX", "BIRTHDAY", "PHONE", "USERNAME"}) {
      all.push_back(machine.userDefaults->value(key));
    }
    return all;
  }
};

TEST_F(SetAppUserID, StoresWhatItWasGivenWhateverTheServiceAnswersInJson) {
  const Date birthday = sys_days(1980y / 3 / 5) + 13h + 45min + 7s + 250ms;
  for (const char* reply : {"{\"rspCode\":0}", "{\"rspCode\":1,\"rspDesc\":\"no\"}", "[]"}) {
    answers(reply);
    call("other", "other", false, sys_days(2000y / 1 / 1), "other");
    run();
    call("id", "\u5f20", true, birthday, "+1");
    EXPECT_EQ(stored().front(), DefaultsValue("other"s)) << "nothing is stored before the reply";
    run();
    EXPECT_THAT(stored(), ElementsAre(DefaultsValue("id"s), DefaultsValue(true), DefaultsValue(birthday),
                                      DefaultsValue("+1"s), DefaultsValue("\u5f20"s)))
        << reply;
  }
}

TEST_F(SetAppUserID, StoresNothingWhereTheServiceAnswersNoJson) {
  const std::function<void()> table[] = {[&] { answers("<html>"); }, [&] { fails(); },
                                         [&] { machine.userDefaults->removeValue("SERVICEHOST"); }};
  for (const auto& happens : table) {
    happens();
    call("new", "new", false, sys_days(1990y / 1 / 1), "2");
    run();
    EXPECT_THAT(stored(), Each(std::nullopt));
  }
}

TEST_F(SetAppUserID, NeedsAnIdABirthdayAndAPhone) {
  call({}, "name", true, sys_days(1980y / 3 / 5), "1");
  call("id", "name", true, {}, "1");
  call("id", "name", true, sys_days(1980y / 3 / 5), {});
  run();
  EXPECT_THAT(heard, IsEmpty());
  UserProfile::registerUser("id", "name", true, {}, "1", [this](const auto& error) { heard.push_back(told(error)); });
  run();
  EXPECT_THAT(heard, ElementsAre("registration 0"));
  EXPECT_EQ(requestCount(), 0U);
}

TEST_F(SetAppUserID, TheBirthdayGoesOutAsADayOfTheLocalZoneAndTheNameMayBeMissing) {
  const std::tuple<const char*, Date, const char*> table[] = {
      {"UTC0", sys_days(1980y / 3 / 5) - 1us, "19800304"},
      {"CST-8", sys_days(1980y / 3 / 4) + 16h, "19800305"},
      {"CST-8", sys_days(1980y / 3 / 4) + 16h - 1us, "19800304"},
      {"PST8", sys_days(1980y / 3 / 5) + 7h, "19800304"},
      {"UTC0", sys_days(1900y / 2 / 28), "19000228"},
  };
  for (const auto& [zone, birthday, text] : table) {
    setenv("TZ", zone, 1);
    tzset();
    call("id", {}, false, birthday, "1");
    run();
    EXPECT_EQ(sent().at("birthday"), text) << zone;
    EXPECT_EQ(sent().at("username"), "");
    EXPECT_EQ(sent().at("gender"), "0");
    EXPECT_EQ(stored().back(), DefaultsValue(""s));
  }
}

TEST(Birthday, IsReadAsPeopleWriteOneSince1900) {
  ServiceScript script;
  for (const char* text : {"1980-03-05", "1980-3-5", "1980/3/05", "1980.03.5", "19800305"}) {
    const auto day = UserProfile::birthdayOf(text);
    EXPECT_TRUE(day && dateText(*day, "%Y-%m-%d") == "1980-03-05") << text;
  }
  EXPECT_TRUE(UserProfile::birthdayOf("1900-01-01"));
  for (const char* text : {"1899-12-31", "9999-01-01", "1980-02-30", "5.3.1980", "19800305-", "word", ""}) {
    EXPECT_FALSE(UserProfile::birthdayOf(text)) << text;
  }
}

}  // namespace
}  // namespace orn
