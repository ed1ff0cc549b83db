#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <tests/results/ServiceScript.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceAction.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/common/PropertyList.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>

namespace orn {
namespace {

using namespace std::string_literals;
using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kAddress = "AA:BB:CC:DD:EE:FF";

const json kAudiometer = {{{"id", 1}},
                          {{"id", 2}, {"base", true}, {"earplug_model", "2"}},
                          {{"id", 3}, {"base", true}, {"earplug_model", "1"}},
                          {{"id", 4}, {"base", true}, {"earplug_model", "3"}},
                          {{"id", 5}, {"base", false}, {"earplug_model", "2"}}};
const json kEarphones = {{{"id", 1}, {"ear", 1}}, {{"id", 2}, {"ear", "2"}}, {{"id", 3}, {"ear", 1}}, {{"id", 4}}};

std::string reply(const json& records, int rspCode = 0) {
  return json{{"rspCode", rspCode}, {"deviceVolumeIOS", records}}.dump();
}

std::string idOf(const ORNManualHearingTest::Record& record) { return record ? std::to_string(record->id()) : "-"; }

struct CalibrationFetch : testing::Test, ServiceScript {
  CalibrationFetch() { machine.device->givenMachine = "Phone1,1"; }

  std::string folder() const { return machine.fileManager->documentsDirectory(); }

  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder())) {
      names.push_back(std::filesystem::relative(entry.path(), folder()).string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  std::optional<std::string> contents(const std::string& name) const {
    const auto bytes = machine.fileManager->contents(folder() + "/" + name);
    return bytes ? std::optional(std::string(bytes->begin(), bytes->end())) : std::nullopt;
  }

  void put(const std::string& name, const std::string& text) const {
    ASSERT_TRUE(machine.fileManager->writeAtomically(
        folder() + "/" + name, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}));
  }

  /// What the callback hears and how often the service is asked: "asks: ok", "cache: " if it hears nothing, and
  /// "cache: within ok" if it is called within the call.
  std::string outcome(const std::function<void(ORNManualHearingTest::CompletionHandler)>& operation) {
    const auto before = requestCount();
    std::string heard, atThatTime;
    bool isWithin = true;
    operation([&](const std::optional<Error>& error) {
      heard += (isWithin ? "within " : "") + told(error);
      atThatTime = fields();
    });
    isWithin = false;
    run();
    EXPECT_EQ(heard.empty() ? "" : fields(), atThatTime) << "the records are there when the callback comes";
    return (requestCount() == before ? "cache: " : requestCount() == before + 1 ? "asks: " : "asks often: ") + heard;
  }

  std::string audiometer(const std::string& address = kAddress) {
    return outcome([&](auto done) { session->setKV50MAC(address, done); });
  }
  std::string history(const std::string& address = kAddress) {
    return outcome(
        [&](auto done) { session->getTestHistoryByMAC(address, [done](auto error, std::nullptr_t) { done(error); }); });
  }
  std::string earphones(const std::string& model = "1") {
    return outcome([&](auto done) { session->setEarPlugModel(model, done); });
  }

  /// ab, aabb, xxyy, leftVolume, rightVolue by the ids of their records.
  std::string fields() const {
    return idOf(session->ab()) + idOf(session->aabb()) + idOf(session->xxyy()) + " " + idOf(session->leftVolume()) +
           idOf(session->rightVolue());
  }

  void newSession() { session = ORNManualHearingTest::init(); }

  std::shared_ptr<ORNManualHearingTest> session = ORNManualHearingTest::init();
};

TEST_F(CalibrationFetch, AudiometerRepliesAreKeptToTheByteAndCallBackWithinTheCall) {
  const std::string text =
      "{ \"unknown\":1.50,\r\n \"rspCode\" :\"0\", \"deviceVolumeIOS\":" + kAudiometer.dump() + "}\n";
  answers(text);
  const std::pair<std::string (CalibrationFetch::*)(const std::string&), const char*> table[] = {
      {&CalibrationFetch::audiometer, "__AA_BB_CC_DD_EE_FF"},
      {&CalibrationFetch::history, "history__AA_BB_CC_DD_EE_FF"}};
  for (const auto& [operation, file] : table) {
    for (const char* heard : {"asks: ok", "cache: within ok"}) {
      newSession();
      EXPECT_EQ((this->*operation)(kAddress), heard) << file;
      EXPECT_EQ(fields(), "523 --");
      EXPECT_EQ(session->KV50MAC(), kAddress);
      EXPECT_EQ(contents(file), text);
    }
  }
  EXPECT_THAT(files(), ElementsAre("__AA_BB_CC_DD_EE_FF", "history__AA_BB_CC_DD_EE_FF"));
}

TEST_F(CalibrationFetch, EarphoneRepliesAreKeptAsAPropertyListAndNeverCallBack) {
  answers(reply(kEarphones));
  for (const char* heard : {"asks: ok", "cache: "}) {
    newSession();
    EXPECT_EQ(earphones("a:b"), heard);
    EXPECT_EQ(fields(), "--- 32");
    EXPECT_EQ(session->earPlugModel(), "a:b");
  }
  EXPECT_THAT(files(), ElementsAre("Phone1,1_a:b"));
  const auto bytes = machine.fileManager->contents(folder() + "/Phone1,1_a:b").value();
  EXPECT_EQ(dictionaryOfPropertyList(bytes), json::parse(reply(kEarphones)));

  put("Phone1,1_a:b", propertyListOf(json::parse(reply(kEarphones, 1))).value());
  newSession();
  EXPECT_EQ(earphones("a:b"), "cache: ") << "not even on a refusal";
  EXPECT_EQ(fields(), "--- --");
}

TEST_F(CalibrationFetch, WhatCannotBeKeptIsUsedAndAskedForAgain) {
  std::filesystem::remove_all(folder());
  for (int time = 0; time < 2; ++time) {
    newSession();
    answers(reply(kAudiometer));
    EXPECT_EQ(audiometer(), "asks: ok");
    answers(reply(kEarphones));
    EXPECT_EQ(earphones(), "asks: ok");
    EXPECT_EQ(fields(), "523 32");
  }
}

TEST_F(CalibrationFetch, ARefusalFillsTheFieldsAndStoresNothing) {
  answers(reply(kAudiometer, 1));
  EXPECT_EQ(audiometer(), "asks: ok");
  EXPECT_EQ(history(), "asks: ok");
  answers(reply(kEarphones, 1));
  EXPECT_EQ(earphones(), "asks: ok");
  EXPECT_EQ(fields(), "523 32");
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CalibrationFetch, WithoutAReplyTheFieldsStayAsTheyWere) {
  const auto old = ORNDeviceVolumeIOS::initWithDictionary({{"id", 9}});
  session->setAb(old);
  session->setLeftVolume(old);
  fails();
  EXPECT_EQ(audiometer(), "asks: transport 7 gone");
  EXPECT_EQ(history("other"), "asks: transport 7 gone");
  EXPECT_EQ(earphones(), "asks: transport 7 gone");
  EXPECT_EQ(fields(), "9-- 9-");
  EXPECT_EQ(session->KV50MAC(), "other") << "is set whatever follows";
  EXPECT_EQ(session->earPlugModel(), "1");
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CalibrationFetch, AFieldWithoutARecordKeepsItsOldValue) {
  const auto old = ORNDeviceVolumeIOS::initWithDictionary({{"id", 9}});
  session->setAb(old);
  session->setXxyy(old);
  session->setLeftVolume(old);
  answers(reply({{{"id", 2}, {"base", true}, {"earplug_model", "2"}}, nullptr, 5, json::array()}));
  EXPECT_EQ(audiometer(), "asks: ok");
  answers(reply({{{"id", 4}, {"ear", 2}}}));
  EXPECT_EQ(earphones(), "asks: ok");
  EXPECT_EQ(fields(), "929 94");
}

TEST_F(CalibrationFetch, WhatIsNoJsonIsStoredForAnAudiometerAndAskedForAgain) {
  for (const std::string& text : {"<html>"s, "[]"s, "{\"rspCode\":1"s, "\0\xFF"s, "null"s}) {
    answers(text);
    EXPECT_EQ(audiometer(), "asks: ok");
    EXPECT_EQ(contents("__AA_BB_CC_DD_EE_FF"), text);
    EXPECT_EQ(earphones(), "asks: ok");
    EXPECT_THAT(files(), ElementsAre("__AA_BB_CC_DD_EE_FF"));
    EXPECT_EQ(fields(), "--- --");
  }
}

TEST_F(CalibrationFetch, AnEarphoneReplyThatNoPropertyListHoldsIsNotStored) {
  answers(R"({"rspCode":0,"deviceVolumeIOS":[{"id":1,"ear":1,"earPath":null}]})");
  EXPECT_EQ(earphones(), "asks: ok");
  EXPECT_EQ(fields(), "--- 1-");
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CalibrationFetch, ACorruptCacheIsAskedForAgain) {
  const std::string good = reply(kAudiometer), list = propertyListOf(json::parse(reply(kEarphones))).value();
  for (const std::string& text : {""s, "[]"s, reply(kAudiometer, 1), good.substr(0, good.size() - 1), good + "x"}) {
    answers(good);
    put("__AA_BB_CC_DD_EE_FF", text);
    newSession();
    EXPECT_EQ(audiometer(), "asks: ok") << text;
    EXPECT_EQ(fields(), "523 --");
    EXPECT_EQ(contents("__AA_BB_CC_DD_EE_FF"), good);
  }
  for (const std::string& text :
       {""s, reply(kEarphones), list.substr(0, list.size() / 2), propertyListOf(json::array({1})).value()}) {
    answers(reply(kEarphones));
    put("Phone1,1_1", text);
    newSession();
    EXPECT_EQ(earphones(), "asks: ok") << text;
    EXPECT_EQ(fields(), "--- 32");
    EXPECT_EQ(contents("Phone1,1_1"), list);
  }
}

TEST_F(CalibrationFetch, HostileNamesStayInsideTheFolder) {
  const struct {
    std::string name, audiometer, earphones;
  } table[] = {
      {"", "__", "Phone1,1_"},
      {"../\0x"s, "__..__x", "Phone1,1_..__x"},
      {"a\nb\\c \u597d", "__a\nb\\c \u597d", "Phone1,1_a\nb\\c \u597d"},
  };
  for (const auto& row : table) {
    answers(reply(kAudiometer));
    EXPECT_EQ(audiometer(row.name), "asks: ok") << row.name;
    answers(reply(kEarphones));
    EXPECT_EQ(earphones(row.name), "asks: ok") << row.name;
    EXPECT_THAT(files(), testing::UnorderedElementsAre(row.audiometer, row.earphones));
    for (const auto& file : files()) machine.fileManager->removeFile(folder() + "/" + file);
  }
}

TEST_F(CalibrationFetch, ASessionReleasedMeanwhileIsNotMissed) {
  std::vector<std::string> heard;
  answers(reply(kAudiometer));
  session->setKV50MAC(kAddress, [&](const std::optional<Error>& error) { heard.push_back(told(error)); });
  session->setEarPlugModel("1", [&](const std::optional<Error>& error) { heard.push_back(told(error)); });
  const std::weak_ptr<ORNManualHearingTest> released = session;
  session.reset();
  EXPECT_TRUE(released.expired()) << "a request keeps no session";
  run();
  EXPECT_THAT(heard, ElementsAre("ok", "ok"));
  EXPECT_THAT(files(), ElementsAre("Phone1,1_1", "__AA_BB_CC_DD_EE_FF"));
}

TEST_F(CalibrationFetch, OfTheActionIsAnsweredWhereASettingIsTrue) {
  const std::pair<std::optional<DefaultsValue>, bool> table[] = {
      {true, true},          {std::int64_t{-1}, true},
      {0.5, true},           {"YES"s, true},
      {"true"s, true},       {"1"s, true},
      {false, false},        {std::int64_t{0}, false},
      {0.0, false},          {"NO"s, false},
      {""s, false},          {"0"s, false},
      {"no Y"s, false},      {std::chrono::system_clock::time_point(), false},
      {std::nullopt, false},
  };
  for (const auto& [setting, isAnswered] : table) {
    machine.userDefaults->removeValue("LOCAL");
    if (setting) machine.userDefaults->setValue("LOCAL", *setting);
    int answers = 0;
    ORNDeviceCorrectAction::getDeviceCorrectsWithErji(0, [&](const auto& records) { answers += records ? 10 : 1; });
    run();
    EXPECT_EQ(answers, isAnswered ? 1 : 0) << (setting ? setting->index() : 99);
  }
}

}  // namespace
}  // namespace orn
