#include <filesystem>
#include <fstream>
#include <set>

#include <tests/results/ServiceScript.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceAction.h>
#include <ORNHearingTestSDK/common/PropertyList.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>

namespace orn {
namespace {

using namespace std::string_literals;
using nlohmann::json;
using testing::ElementsAre;

const std::string kAddress = "AA:BB:CC:DD:EE:FF", kAudiometerFile = "__AA_BB_CC_DD_EE_FF";
const std::string kModel = "a:b", kEarphonesFile = "Phone1,1_a:b";

/// The last record for a role or an ear counts: 6, 2 and 5; 3 and 2. The others have no role.
const json kRecords = json::parse(R"([
  {"id": 1, "ear": 1}, {"id": 2, "ear": "2"}, {"id": 3, "ear": 1.9}, {"id": 4, "ear": 3}, {"id": 5},
  {"id": 7, "ear": 4294967297}, {"id": 2, "base": true, "earplug_model": "2"},
  {"id": 3, "base": true, "earplug_model": "1"}, {"id": 4, "base": true, "earplug_model": "3"},
  {"id": 5, "base": true, "earplug_model": "1"}, {"id": 6, "base": false, "earplug_model": "2"},
  {"id": 7, "base": true, "earplug_model": "02"}, {"id": 8, "base": true},
  {"id": 9, "base": true, "earplug_model": 2}])");
const json kReply{{"rspCode", 0}, {"deviceVolumeIOS", kRecords}},
    kRefusal{{"rspCode", 1}, {"deviceVolumeIOS", kRecords}};
const std::string kText = kReply.dump(), kList = propertyListOf(kReply).value();

std::string idOf(const ORNManualHearingTest::Record& record) { return record ? std::to_string(record->id()) : "-"; }

struct CalibrationFetch : testing::Test, ServiceScript {
  CalibrationFetch() {
    machine.device->givenMachine = "Phone1,1";
    answers(kText);
  }

  std::string folder() const { return machine.fileManager->documentsDirectory(); }

  std::set<std::string> files() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder())) names.insert(entry.path().filename());
    return names;
  }

  void removeFiles() const {
    for (const auto& file : files()) machine.fileManager->removeFile(folder() + "/" + file);
  }

  std::optional<std::string> contents(const std::string& name) const {
    const auto bytes = machine.fileManager->contents(folder() + "/" + name);
    return bytes ? std::optional(std::string(bytes->begin(), bytes->end())) : std::nullopt;
  }

  void put(const std::string& name, const std::string& text) const {
    EXPECT_TRUE(std::ofstream(folder() + "/" + name, std::ios::binary) << text);
  }

  /// For a new session that has the record 9 everywhere: whether the service is asked, what the callback is told, and
  /// the records ab, aabb, xxyy, leftVolume, rightVolue by their ids. Such as "asks: ok, 625 99", "cache: , 999 32" if
  /// it is not called, "cache: within ok, 625 99" if it is called within the call.
  std::string outcome(const std::function<void(ORNManualHearingTest::CompletionHandler)>& operation) {
    session = ORNManualHearingTest::init();
    const auto old = ORNDeviceVolumeIOS::initWithDictionary({{"id", 9}});
    session->setAb(old), session->setAabb(old), session->setXxyy(old);
    session->setLeftVolume(old), session->setRightVolue(old);
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
    const auto asked = requestCount() - before;
    return (asked == 0 ? "cache: " : asked == 1 ? "asks: " : "asks often: ") + heard + ", " + fields();
  }

  std::string audiometer(const std::string& address = kAddress) {
    return outcome([&](auto done) { session->setKV50MAC(address, done); });
  }
  std::string history(const std::string& address = kAddress) {
    return outcome(
        [&](auto done) { session->getTestHistoryByMAC(address, [done](auto error, std::nullptr_t) { done(error); }); });
  }
  std::string earphones(const std::string& model = kModel) {
    return outcome([&](auto done) { session->setEarPlugModel(model, done); });
  }

  std::string fields() const {
    return idOf(session->ab()) + idOf(session->aabb()) + idOf(session->xxyy()) + " " + idOf(session->leftVolume()) +
           idOf(session->rightVolue());
  }

  std::shared_ptr<ORNManualHearingTest> session = ORNManualHearingTest::init();
};

TEST_F(CalibrationFetch, AudiometerRepliesAreKeptToTheByteAndCallBackWithinTheCall) {
  const std::string text = "{ \"unknown\":1.50,\r\n \"rspCode\" :\"0\", \"deviceVolumeIOS\":" + kRecords.dump() + "}\n";
  answers(text);
  for (const auto operation : {&CalibrationFetch::audiometer, &CalibrationFetch::history}) {
    for (const char* heard : {"asks: ok, 625 99", "cache: within ok, 625 99"}) {
      EXPECT_EQ((this->*operation)(kAddress), heard);
      EXPECT_EQ(session->KV50MAC(), kAddress);
    }
  }
  EXPECT_THAT(files(), ElementsAre(kAudiometerFile, "history" + kAudiometerFile));
  for (const auto& file : files()) EXPECT_EQ(contents(file), text);
}

TEST_F(CalibrationFetch, EarphoneRepliesAreKeptAsAPropertyListAndNeverCallBack) {
  for (const char* heard : {"asks: ok, 999 32", "cache: , 999 32"}) {
    EXPECT_EQ(earphones(), heard);
    EXPECT_EQ(session->earPlugModel(), kModel);
  }
  EXPECT_THAT(files(), ElementsAre(kEarphonesFile));
  EXPECT_EQ(contents(kEarphonesFile), kList);
  put(kEarphonesFile, propertyListOf(kRefusal).value());
  EXPECT_EQ(earphones(), "cache: , 999 99") << "not even on a refusal";
}

TEST_F(CalibrationFetch, WhatCannotBeKeptIsUsedAndAskedForAgain) {
  std::filesystem::remove_all(folder());
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(audiometer(), "asks: ok, 625 99");
    EXPECT_EQ(earphones(), "asks: ok, 999 32");
  }
}

TEST_F(CalibrationFetch, FillsTheFieldsThatAReplyHasRecordsForAndStoresWhatMayServeAgain) {
  const struct {
    std::string text, audiometer, earphones;
    bool isKeptOfAudiometer, isKeptOfEarphones;
  } table[] = {
      {kRefusal.dump(), "625 99", "999 32", false, false},
      {R"({"deviceVolumeIOS":[{"id":2,"base":true,"earplug_model":"2"},null,5,[]]})", "929 99", "999 99", true, false},
      {R"({"deviceVolumeIOS":[{"id":4,"ear":2}]})", "499 99", "999 94", true, true},
      {R"({"deviceVolumeIOS":[{"id":1,"ear":1,"earPath":null}]})", "199 99", "999 19", true, false},
      {R"({"rspCode":1})", "999 99", "999 99", false, false},
      {"<html>", "999 99", "999 99", true, false},
      {"[]", "999 99", "999 99", true, false},
      {"\0\xFF"s, "999 99", "999 99", true, false},
  };
  for (const auto& row : table) {
    answers(row.text);
    EXPECT_EQ(audiometer(), "asks: ok, " + row.audiometer) << row.text;
    EXPECT_EQ(contents(kAudiometerFile), row.isKeptOfAudiometer ? std::optional(row.text) : std::nullopt) << row.text;
    EXPECT_EQ(earphones(), "asks: ok, " + row.earphones) << row.text;
    EXPECT_EQ(contents(kEarphonesFile).has_value(), row.isKeptOfEarphones) << row.text;
    removeFiles();
  }
}

TEST_F(CalibrationFetch, LeavesTheFieldsAsTheyAreWithoutAReply) {
  fails();
  for (const auto& heard : {audiometer(), history(), earphones()}) EXPECT_EQ(heard, "asks: transport 7 gone, 999 99");
  EXPECT_EQ(session->earPlugModel(), kModel) << "is set whatever follows";
}

TEST_F(CalibrationFetch, ACorruptCacheIsAskedForAgain) {
  for (const std::string& text : {""s, "[]"s, kRefusal.dump(), kText.substr(0, kText.size() - 1), kText + "x"}) {
    put(kAudiometerFile, text);
    EXPECT_EQ(audiometer(), "asks: ok, 625 99") << text;
    EXPECT_EQ(contents(kAudiometerFile), kText);
  }
  for (const std::string& text : {""s, kText, kList.substr(0, kList.size() / 2), *propertyListOf(json::array({1}))}) {
    put(kEarphonesFile, text);
    EXPECT_EQ(earphones(), "asks: ok, 999 32") << text;
    EXPECT_EQ(contents(kEarphonesFile), kList);
  }
}

TEST_F(CalibrationFetch, HostileNamesStayInsideTheFolder) {
  const std::tuple<std::string, std::string, std::string> table[] = {
      {"", "__", "Phone1,1_"},
      {"../\0x"s, "__..__x", "Phone1,1_..__x"},
      {"a\nb\\c \u597d", "__a\nb\\c \u597d", "Phone1,1_a\nb\\c \u597d"},
  };
  for (const auto& [name, audiometerFile, earphonesFile] : table) {
    EXPECT_EQ(audiometer(name), "asks: ok, 625 99") << name;
    EXPECT_EQ(earphones(name), "asks: ok, 999 32") << name;
    EXPECT_THAT(files(), testing::UnorderedElementsAre(audiometerFile, earphonesFile));
    removeFiles();
  }
}

TEST_F(CalibrationFetch, ASessionReleasedMeanwhileIsNotMissed) {
  std::vector<std::string> heard;
  session->setKV50MAC(kAddress, [&](const std::optional<Error>& error) { heard.push_back(told(error)); });
  session->setEarPlugModel(kModel, [&](const std::optional<Error>& error) { heard.push_back(told(error)); });
  const std::weak_ptr<ORNManualHearingTest> released = session;
  session.reset();
  EXPECT_TRUE(released.expired()) << "a request keeps no session";
  run();
  EXPECT_THAT(heard, ElementsAre("ok", "ok"));
  EXPECT_THAT(files(), ElementsAre(kEarphonesFile, kAudiometerFile));
}

TEST_F(CalibrationFetch, OfTheActionIsAnsweredWhereASettingIsTrue) {
  const std::pair<DefaultsValue, bool> table[] = {{true, true},    {std::int64_t{-1}, true}, {0.5, true},
                                                  {"YES"s, true},  {false, false},           {0.0, false},
                                                  {"no Y"s, false}};
  for (const auto& [setting, isAnswered] : table) {
    machine.userDefaults->setValue("LOCAL", setting);
    int answers = 0;
    ORNDeviceCorrectAction::getDeviceCorrectsWithErji(0, [&](const auto& records) { answers += records ? 10 : 1; });
    run();
    EXPECT_EQ(answers, isAnswered ? 1 : 0) << setting.index();
  }
}

}  // namespace
}  // namespace orn
