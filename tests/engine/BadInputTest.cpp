#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;
using Record = std::shared_ptr<ORNDeviceVolumeIOS>;

constexpr bool kLeft = true, kRight = false;

Record enciphered(const std::string& s1000) {
  return ORNDeviceVolumeIOS::initWithDictionary(
      {{"s1000", s1000}, {"s2000", encipheredLevel("-60")}, {"base", false}, {"ear", 2}});
}

/// What a record for the right ear may be short of.
std::vector<Record> uselessRecords() {
  return {nullptr,
          std::make_shared<ORNDeviceVolumeIOS>(),
          enciphered(""),
          enciphered("-60"),
          enciphered("not base64!x"),
          enciphered(encipheredLevel("1e999")),
          ORNDeviceVolumeIOS::initWithDictionary({{"s1000", 60}}),
          ORNDeviceVolumeIOS::initWithDictionary("no record")};
}

TEST(MissingCalibration, PausesTheTimedTestUntilItIsThere) {
  const std::pair<SessionScript::Type, Lines> table[] = {
      {SessionScript::Auto, {"60 R 1000hz 40db", "64 R 1000hz 50db", "68 R 1000hz 45db", "72 R -> 1000hz 45db"}},
      {SessionScript::Standard, {"60 R 1000hz 60db", "64 R 1000hz 65db", "68 R 1000hz 55db", "72 R 1000hz 45db"}},
  };
  for (const auto& [type, found] : table) {
    for (const Record& useless : uselessRecords()) {
      SessionScript test(type);
      test.session->setRightVolue(useless);
      test.session->startTest(kRight);
      test.at(10, [&] { test.session->listened(); });
      test.run(20);
      EXPECT_THAT(test.takeTrace(), ElementsAre("4 R missing"));
      EXPECT_FALSE(test.quiet1000->isPlaying || test.loud1000->isPlaying);
      EXPECT_THAT(*test.session->getTestResult(kRight), IsEmpty());
      EXPECT_EQ(test.session->getTestProgress(), 0);
      test.session->continueTest();
      test.run(20);
      EXPECT_THAT(test.takeTrace(), ElementsAre("20 R missing"));
      test.session->setRightVolue(SessionScript::record("-60"));
      test.presses("NHH");  // so a press that had counted would show
      test.at(60, [&] { test.session->continueTest(); });
      test.run(32.1);
      EXPECT_EQ(test.takeTrace(), found);
    }
  }
}

TEST(MissingCalibration, OfALaterFrequencyKeepsWhatWasFound) {
  SessionScript test(SessionScript::Auto);
  test.session->setTestHzs({"1000hz", "2000hz"});
  const Record record = SessionScript::record("-60");
  record->setS2000(std::nullopt);
  test.session->setRightVolue(record);
  test.presses("HNH NHH");
  test.session->startTest(kRight);
  test.run(40);
  EXPECT_THAT(test.takeTrace(), ElementsAre("4 R 1000hz 40db", "8 R 1000hz 30db", "12 R 1000hz 35db",
                                            "16 R -> 1000hz 35db", "17 R missing"));
  test.session->setRightVolue(SessionScript::record("-60"));
  test.session->continueTest();
  test.run(40);
  EXPECT_THAT(test.takeTrace(), ElementsAre("40 R 2000hz 40db", "44 R 2000hz 50db", "48 R 2000hz 45db",
                                            "52 R -> 2000hz 45db", "52 R complete 1000hz=35 2000hz=45"));
}

TEST(MissingCalibration, OfAManualToneRecordsNothing) {
  for (const Record& useless : uselessRecords()) {
    SessionScript test(SessionScript::Manual);
    test.session->setRightVolue(useless);
    test.session->startTest(kRight);
    test.session->playAtHz("1000hz", "40");
    test.session->listened();
    EXPECT_THAT(test.takeTrace(), ElementsAre("0 R missing"));
    test.session->setRightVolue(SessionScript::record("-60"));
    test.session->playAtHz("1000hz", "40");
    test.session->listened();
    EXPECT_THAT(test.takeTrace(), ElementsAre("0 R 1000hz 40db", "0 R -> 1000hz 40db"));
  }
}

TEST(MissingCalibration, OnTheAudiometerCountsAsZeros) {
  SessionScript test(SessionScript::Manual, SessionScript::Audiometer);
  test.session->setAb(nullptr);
  float volume = 0;
  test.onTone = [&](const std::string&, const std::string&, float told) { volume = told; };
  test.session->startTest(kRight);
  test.session->playAtHz("1000hz", "60");
  EXPECT_FLOAT_EQ(volume, 1e-4F);
}

/// Drives a test of both ears in which nothing is heard, with a delegate that does something in one of its calls.
struct Careless : SessionScript {
  explicit Careless(Type type) : SessionScript(type), type_(type) { session->setTestHzs({"1000hz", "2000hz"}); }

  void doIn(const std::string& call, const std::function<void()>& what) {
    ORNHearingTestDelegate& told = *delegate;
    if (call == "tone") told.willTestAtHz = [what](auto&&...) { what(); };
    if (call == "threshold") told.willSelectedAtHz = [what](auto&&...) { what(); };
    if (call == "ear") told.oneEarCompleteWithResult = [what](auto&&...) { what(); };
    if (call == "test") told.completeWithLeftResult = [what](auto&&...) { what(); };
    if (call == "missing") {
      session->setRightVolue(nullptr);
      told.calibrationMissing = [what](auto&&...) { what(); };
    }
  }

  /// As far as there is a session.
  void go() {
    for (const bool isLeft : {kRight, kLeft}) {
      if (session) session->startTest(isLeft);
      if (type_ == Manual) settleByHand();
      run(type_ == Standard ? 250 : 60);
    }
  }

 private:
  void settleByHand() {
    for (const char* hz : {"1000hz", "2000hz"}) {
      if (session) session->playAtHz(hz, "90");
      if (session) session->listened();
    }
  }

  Type type_;
};

constexpr SessionScript::Type kTypes[] = {SessionScript::Auto, SessionScript::Manual, SessionScript::Standard};

TEST(CarelessDelegate, MayReleaseTheSessionInEachOfItsCalls) {
  for (const auto type : kTypes) {
    for (const char* call : {"tone", "threshold", "ear", "test", "missing"}) {
      Careless test(type);
      const std::weak_ptr<ORNManualHearingTest> life = test.session;
      test.doIn(call, [&test] { test.session.reset(); });
      test.go();
      EXPECT_FALSE(test.session) << call << " never came";
      // A timed test that waits for its calibration is parked, and a parked one lives on.
      const bool isParked = type != SessionScript::Manual && std::string(call) == "missing";
      EXPECT_EQ(life.expired(), !isParked) << type << call;
    }
  }
}

TEST(CarelessDelegate, MayDeleteItselfInEachOfItsCalls) {
  for (const auto type : kTypes) {
    for (const char* call : {"tone", "threshold", "ear", "test", "missing"}) {
      Careless test(type);
      test.doIn(call, [&test, kept = std::string("of the delegate's own")] {
        test.delegate.reset();
        EXPECT_EQ(kept, "of the delegate's own");
      });
      test.go();
      EXPECT_FALSE(test.delegate) << call << " never came";
      const bool isStopped = std::string(call) == "missing";
      EXPECT_EQ(test.submissions().size(), isStopped ? 0U : 1U) << type << call;
    }
  }
}

TEST(UnknownFrequency, IsTestedLikeAnyOtherOnBothPaths) {
  for (const auto path : {SessionScript::Earphones, SessionScript::Audiometer}) {
    SessionScript test(SessionScript::Auto, path);
    test.session->setTestHzs({"750hz", "abc", "", "99999999999999999999hz", "-1000hz"});
    test.session->startTest(kRight);
    test.run(200);
    EXPECT_EQ(test.takeTrace().back(), "124 R complete -1000hz=90 =90 abc=90 750hz=90 99999999999999999999hz=90");
    if (path == SessionScript::Audiometer) {
      EXPECT_EQ(test.loudest(0, 200), 0);
    }
  }
}

TEST(UnknownFrequency, OrLevelPlaysNothing) {
  const std::pair<const char*, const char*> table[] = {
      {"750hz", "40"},    {"abc", "40"},
      {"", "40"},         {"99999999999999999999hz", "40"},
      {"1000hz", "95db"}, {"1000hz", ""},
      {"1000hz", "db"},   {"1000hz", "99999999999999999999"},
      {"1000", "40"},     {"1000hz", "-99999999999999999999"},
  };
  for (const auto path : {SessionScript::Earphones, SessionScript::Audiometer}) {
    for (const auto& [hz, db] : table) {
      SessionScript test(SessionScript::Manual, path);
      test.session->startTest(kRight);
      test.session->playAtHz("1000hz", "40");
      test.takeTrace();
      test.session->playAtHz(hz, db);
      EXPECT_THAT(test.takeTrace(), IsEmpty()) << hz << " " << db;
      EXPECT_FALSE(test.quiet1000->isPlaying);
      test.run(1);
      if (path == SessionScript::Audiometer) {
        EXPECT_GT(test.loudest(0.6, 1), 0) << "the tone goes on";
      }
    }
  }
}

TEST(FrequencyList, ThatIsEmptyIsTheSeven) {
  SessionScript test(SessionScript::Auto);
  test.session->setTestHzs({});
  test.session->startTest(kRight);
  test.run(250);
  EXPECT_EQ(test.takeTrace().back(),
            "172 R complete 125hz=90 250hz=90 500hz=90 1000hz=90 2000hz=90 4000hz=90 8000hz=90");
}

TEST(FrequencyList, CountsARepeatedKeyOnce) {
  SessionScript test(SessionScript::Auto);
  test.session->setTestHzs({"1000hz", "1000hz", "2000hz", "1000hz"});
  test.session->startTest(kRight);
  test.run(100);
  EXPECT_EQ(test.takeTrace().back(), "52 R complete 1000hz=90 2000hz=90");
}

}  // namespace
}  // namespace orn
