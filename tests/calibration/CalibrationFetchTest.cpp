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

const std::string kAddress = "AA:BB:CC:DD:EE:FF";

/// The last record of a part or an ear wins: 6, 2 and 5; 3 and 2. The others are of none.
const json kAudiometer = {{{"id", 1}},
                          {{"id", 2}, {"base", true}, {"earplug_model", "2"}},
                          {{"id", 3}, {"base", true}, {"earplug_model", "1"}},
                          {{"id", 4}, {"base", true}, {"earplug_model", "3"}},
                          {{"id", 5}, {"base", true}, {"earplug_model", "1"}},
                          {{"id", 6}, {"base", false}, {"earplug_model", "2"}},
                          {{"id", 7}, {"base", true}, {"earplug_model", "02"}},
                          {{"id", 8}, {"base", true}},
                          {{"id", 9}, {"base", true}, {"earplug_model", 2}}};
const json kEarphones = {{{"id", 1}, {"ear", 1}},
                         {{"id", 2}, {"ear", "2"}},
                         {{"id", 3}, {"ear", 1.9}},
                         {{"id", 4}, {"ear", 3}},
                         {{"id", 5}},
                         {{"id", 7}, {"ear", 4294967297}}};

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
      EXPECT_EQ(fields(), "625 --");
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
    EXPECT_EQ(fields(), "625 32");
  }
}

TEST_F(CalibrationFetch, FillsTheFieldsThatAReplyHasRecordsForAndStoresWhatMayServeAgain) {
  const auto old = ORNDeviceVolumeIOS::initWithDictionary({{"id", 9}});
  const std::string anyAudiometer = "__AA_BB_CC_DD_EE_FF", anyEarphones = "Phone1,1_1";
  const struct {
    std::optional<std::string> audiometer, earphones;
    std::string fields;
    std::vector<std::string> stored;
  } table[] = {
      {{}, {}, "999 99", {}},
      {reply(kAudiometer, 1), reply(kEarphones, 1), "625 32", {}},
      {reply({{{"id", 2}, {"base", true}, {"earplug_model", "2"}}, nullptr, 5, json::array()}),
       reply({{{"id", 4}, {"ear", 2}}}),
       "929 94",
       {anyEarphones, anyAudiometer}},
      {R"({"rspCode":1})", R"({"rspCode":0,"deviceVolumeIOS":[{"id":1,"ear":1,"earPath":null}]})", "999 19", {}},
      {"<html>", "<html>", "999 99", {anyAudiometer}},
      {"[]", "[]", "999 99", {anyAudiometer}},
      {"{\"rspCode\":1", "null", "999 99", {anyAudiometer}},
      {"\0\xFF"s, "\0\xFF"s, "999 99", {anyAudiometer}},
  };
  for (const auto& row : table) {
    newSession();
    for (const auto set : {&ORNManualHearingTest::setAb, &ORNManualHearingTest::setAabb, &ORNManualHearingTest::setXxyy,
                           &ORNManualHearingTest::setLeftVolume, &ORNManualHearingTest::setRightVolue}) {
      ((*session).*set)(old);
    }
    const std::string heard = row.audiometer ? "asks: ok" : "asks: transport 7 gone";
    row.audiometer ? answers(*row.audiometer) : fails();
    EXPECT_EQ(history("other"), heard);
    EXPECT_EQ(session->KV50MAC(), "other") << "is set whatever follows";
    machine.fileManager->removeFile(folder() + "/history__other");
    EXPECT_EQ(audiometer(), heard) << "what is no JSON is asked for again";
    row.earphones ? answers(*row.earphones) : fails();
    EXPECT_EQ(earphones(), heard);
    EXPECT_EQ(fields(), row.fields);
    EXPECT_EQ(files(), row.stored);
    for (const auto& file : files()) {
      EXPECT_TRUE(file == anyEarphones || contents(file) == row.audiometer);
      if (row.fields != "999 99") machine.fileManager->removeFile(folder() + "/" + file);
    }
  }
}

TEST_F(CalibrationFetch, ACorruptCacheIsAskedForAgain) {
  const std::string good = reply(kAudiometer), list = propertyListOf(json::parse(reply(kEarphones))).value();
  for (const std::string& text : {""s, "[]"s, reply(kAudiometer, 1), good.substr(0, good.size() - 1), good + "x"}) {
    answers(good);
    put("__AA_BB_CC_DD_EE_FF", text);
    newSession();
    EXPECT_EQ(audiometer(), "asks: ok") << text;
    EXPECT_EQ(fields(), "625 --");
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
      {false, false},        {std::int64_t{0}, false},
      {0.0, false},          {"no Y"s, false},
      {std::nullopt, false}, {std::chrono::system_clock::time_point(), false}};
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
