#include <map>
#include <utility>

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
      EXPECT_THAT(test.takeTrace(), ElementsAre("4 R missing calibration"));
      EXPECT_FALSE(test.quiet1000->isPlaying || test.loud1000->isPlaying);
      EXPECT_THAT(*test.session->getTestResult(kRight), IsEmpty());
      EXPECT_EQ(test.session->getTestProgress(), 0);
      test.session->continueTest();
      test.run(20);
      EXPECT_THAT(test.takeTrace(), ElementsAre("20 R missing calibration"));
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
                                            "16 R -> 1000hz 35db", "17 R missing calibration"));
  test.session->setRightVolue(SessionScript::record("-60"));
  test.session->continueTest();
  test.run(40);
  EXPECT_THAT(test.takeTrace(), ElementsAre("40 R 2000hz 40db", "44 R 2000hz 50db", "48 R 2000hz 45db",
                                            "52 R -> 2000hz 45db", "52 R complete 1000hz=35 2000hz=45"));
}

TEST(MissingCalibration, OfOneEarLeavesNothingBehindForTheOther) {
  for (const auto type : {SessionScript::Auto, SessionScript::Standard}) {
    SessionScript test(type);
    test.session->setRightVolue(nullptr);
    test.session->startTest(kRight);
    test.run(10);
    EXPECT_THAT(test.takeTrace(), ElementsAre("4 R missing calibration"));
    test.session->startTest(kLeft);
    test.run(4.5);
    const auto& playing = test.quiet1000->isPlaying ? test.quiet1000 : test.loud1000;
    EXPECT_TRUE(playing->isPlaying && playing->pan() < 0) << "the left ear's own tone";
  }
}

/// Drives a test of both ears in which nothing is heard, with a delegate that does something in one of its calls.
struct Careless : SessionScript {
  Careless(Type type, Path path) : SessionScript(type, path), type_(type), path_(path) {
    session->setTestHzs({"1000hz", "2000hz"});
  }

  void doIn(const std::string& call, const std::function<void()>& what) {
    ORNHearingTestDelegate& told = *delegate;
    if (call == "tone") told.willTestAtHz = [what](auto&&...) { what(); };
    if (call == "threshold") told.willSelectedAtHz = [what](auto&&...) { what(); };
    if (call == "ear") told.oneEarCompleteWithResult = [what](auto&&...) { what(); };
    if (call == "test") told.completeWithLeftResult = [what](auto&&...) { what(); };
    if (call == "missing") {
      session->setRightVolue(nullptr);
      told.toneMissing = [what](auto&&...) { what(); };
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

  bool isTimed() const { return type_ != Manual; }
  std::string name() const { return "type " + std::to_string(type_) + " path " + std::to_string(path_); }

 private:
  void settleByHand() {
    for (const char* hz : {"1000hz", "2000hz"}) {
      if (session) session->playAtHz(hz, "90");
      if (session) session->listened();
    }
  }

  Type type_;
  Path path_;
};

/// Every type on every path, with the calls that come there.
void forEachCall(const std::function<void(Careless& test, const std::string& call)>& meet) {
  for (const auto type : {SessionScript::Auto, SessionScript::Manual, SessionScript::Standard}) {
    for (const auto path : {SessionScript::Earphones, SessionScript::Audiometer}) {
      for (const char* call : {"tone", "threshold", "ear", "test", "missing"}) {
        if (path == SessionScript::Audiometer && call == std::string("missing")) continue;
        Careless test(type, path);
        SCOPED_TRACE(test.name() + " " + call);
        meet(test, call);
      }
    }
  }
}

TEST(CarelessDelegate, MayReleaseTheSessionInEachOfItsCalls) {
  forEachCall([](Careless& test, const std::string& call) {
    const std::weak_ptr<ORNManualHearingTest> life = test.session;
    test.doIn(call, [&test] { test.session.reset(); });
    test.go();
    EXPECT_FALSE(test.session) << "never came";
    // A timed test that waits for its calibration is parked, and a parked one lives on.
    EXPECT_EQ(life.expired(), !(test.isTimed() && call == "missing"));
  });
}

TEST(CarelessDelegate, MayEndAndReleaseTheSessionInEachOfItsCalls) {
  forEachCall([](Careless& test, const std::string& call) {
    const std::weak_ptr<ORNManualHearingTest> life = test.session;
    int calls = 0;
    test.doIn(call, [&] {
      ++calls;
      test.session->endTest();
      test.session.reset();
    });
    test.go();
    EXPECT_EQ(calls, 1) << "nothing is told of a test that has ended";
    EXPECT_TRUE(life.expired());
  });
}

TEST(CarelessDelegate, HearsNothingMoreOfATestThatItEndedAndNeitherDoesTheService) {
  const std::map<std::string, int> last{{"tone", 1}, {"threshold", 4}, {"ear", 1}, {"test", 1}, {"missing", 1}};
  forEachCall([&](Careless& test, const std::string& call) {
    int left = last.at(call);
    bool isOver = false;
    test.doIn(call, [&] {
      if (--left > 0 || std::exchange(isOver, true)) return;
      test.takeTrace();
      test.session->endTest();
      test.session->listened();
      test.session->continueTest();
    });
    test.go();
    EXPECT_TRUE(isOver);
    EXPECT_THAT(test.takeTrace(), IsEmpty());
    EXPECT_THAT(test.submissions(), IsEmpty());
  });
}

TEST(CarelessDelegate, MayDeleteItselfInEachOfItsCalls) {
  forEachCall([](Careless& test, const std::string& call) {
    test.doIn(call, [&test, kept = std::string("of the delegate's own")] {
      test.delegate.reset();
      EXPECT_EQ(kept, "of the delegate's own");
    });
    test.go();
    EXPECT_FALSE(test.delegate) << "never came";
    EXPECT_EQ(test.submissions().size(), call == "missing" ? 0U : 1U);
  });
}

TEST(CarelessHost, MayReleaseTheSessionInACompletion) {
  using Completion = std::function<void(const std::optional<Error>&)>;
  const struct {
    std::string name;
    std::function<void(ORNManualHearingTest&, Completion)> ask;
    bool isCalledFromCache;
  } table[] = {
      {"audiometer", [](auto& session, auto done) { session.setKV50MAC("AA", std::move(done)); }, true},
      {"earphones", [](auto& session, auto done) { session.setEarPlugModel("1", std::move(done)); }, false},
      {"history",
       [](auto& session, auto done) { session.getTestHistoryByMAC("AA", [done](auto error, auto) { done(error); }); },
       true},
      {"submission",
       [](auto& session, auto done) {
         session.postListenTestWithLeft({}, {}, false, 0, 0, {}, {}, {}, {}, {}, std::move(done));
       },
       true},
  };
  for (const auto& [name, ask, isCalledFromCache] : table) {
    for (const auto type : {SessionScript::Auto, SessionScript::Manual, SessionScript::Standard}) {
      for (const bool isAskedBefore : {false, true}) {
        SessionScript test(type);
        test.machine.urlSession->script("", {R"({"rspCode":0})", {}});
        if (isAskedBefore) ask(*test.session, [](auto&&) {});
        test.run(1);
        const std::weak_ptr<ORNManualHearingTest> life = test.session;
        ask(*test.session, [&](const std::optional<Error>&) { test.session.reset(); });
        test.run(1);
        EXPECT_EQ(life.expired(), isCalledFromCache || !isAskedBefore) << name << type << isAskedBefore;
      }
    }
  }
}

TEST(UnknownFrequency, IsTestedByTheToneOf1000HzOnEarphones) {
  SessionScript test(SessionScript::Auto);
  test.session->setTestHzs({"750hz", "abc", "", "99999999999999999999hz", "-1000hz"});
  test.session->startTest(kRight);
  test.run(200);
  EXPECT_EQ(test.takeTrace().back(), "124 R complete -1000hz=90 =90 abc=90 750hz=90 99999999999999999999hz=90");
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
