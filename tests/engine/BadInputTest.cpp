#include <map>
#include <utility>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Lines = std::vector<std::string>;
using Record = std::shared_ptr<ORNDeviceVolumeIOS>;

TEST(MissingCalibration, OfALaterFrequencyKeepsWhatWasFound) {
  SessionScript test(SessionScript::Auto);
  test.session->setTestHzs({"1000hz", "2000hz"});
  const Record record = SessionScript::record("-60");
  record->setS2000(std::nullopt);
  test.session->setRightVolue(record);
  test.presses("HNH NHH");
  test.session->startTest(kRight);
  test.run(40);
  EXPECT_EQ(test.takeTrace().back(), "17 R missing calibration");
  test.session->setRightVolue(SessionScript::record("-60"));
  test.session->continueTest();
  test.run(40);
  const Lines trace = test.takeTrace();
  EXPECT_EQ(trace.front(), "40 R 2000hz 40db");
  EXPECT_EQ(trace.back(), "52 R complete 1000hz=35 2000hz=45");
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
  Careless(Type kind, Path path) : SessionScript(kind, path, Forgotten), type(kind) {
    session->setTestHzs({"1000hz", "2000hz"});
  }

  void doIn(const std::string& call, const std::function<void()>& what) {
    ORNHearingTestDelegate& told = *delegate;
    if (call == "tone") told.willTestAtHz = [what](auto&&...) { what(); };
    if (call == "threshold") told.willSelectedAtHz = [what](auto&&...) { what(); };
    if (call == "ear") told.oneEarCompleteWithResult = [what](auto&&...) { what(); };
    if (call == "test") told.completeWithLeftResult = [what](auto&&...) { what(); };
    if (call != "missing") return;
    session->setRightVolue(nullptr);
    told.toneMissing = [what](auto&&...) { what(); };
  }

  /// As far as there is a session.
  void go() {
    for (const bool isLeft : {kRight, kLeft}) {
      if (session) session->startTest(isLeft);
      for (const char* hz : {"1000hz", "2000hz"}) {
        if (session && type == Manual) session->playAtHz(hz, "90");
        if (session && type == Manual) session->listened();
      }
      run(!session || type == Manual ? 5 : type == Standard ? 250 : 60);
    }
  }

  const Type type;
};

/// Every type on the paths where it differs, with the calls that come there.
void forEachCall(const std::function<void(Careless& test, const std::string& call)>& meet) {
  for (const auto type : {SessionScript::Auto, SessionScript::Manual, SessionScript::Standard}) {
    for (const auto path : {SessionScript::Earphones, SessionScript::Audiometer}) {
      for (const char* call : {"tone", "threshold", "ear", "test", "missing"}) {
        const bool isElsewhere = type == SessionScript::Standard || call == std::string("missing");
        if (path == SessionScript::Audiometer && isElsewhere) continue;
        Careless test(type, path);
        SCOPED_TRACE(std::to_string(type) + " on path " + std::to_string(path) + " " + call);
        meet(test, call);
      }
    }
  }
}

TEST(CarelessDelegate, MayReleaseOrEndTheSessionOrDeleteItselfInEachOfItsCalls) {
  const std::map<std::string, int> callsOfOne{{"tone", 1}, {"threshold", 4}, {"ear", 1}, {"test", 1}, {"missing", 1}};
  for (const std::string deed : {"release", "end and release", "end", "delete itself"}) {
    forEachCall([&](Careless& test, const std::string& call) {
      SCOPED_TRACE(deed);
      const std::weak_ptr<ORNManualHearingTest> life = test.session;
      int calls = 0;
      test.doIn(call, [&, kept = std::string("of the delegate's own")] {
        if (deed == "end" && ++calls != callsOfOne.at(call)) return;
        if (deed.starts_with("end")) {
          test.takeTrace();
          test.session->endTest();
          test.session->listened();
          test.session->continueTest();
        }
        if (deed.ends_with("release")) test.session.reset();
        if (deed == "delete itself") test.delegate.reset();
        EXPECT_EQ(kept, "of the delegate's own");
      });
      test.go();
      // A timed test that waits for its calibration is parked, and a parked one lives on.
      const bool isKept =
          !deed.ends_with("release") || (deed == "release" && test.type != SessionScript::Manual && call == "missing");
      EXPECT_EQ(life.expired(), !isKept);
      if (deed.starts_with("end")) {
        EXPECT_EQ(calls, deed == "end" ? callsOfOne.at(call) : 0);
        EXPECT_THAT(test.takeTrace(), IsEmpty()) << "nothing is told of what has ended";
        EXPECT_THAT(test.submissions(), IsEmpty());
      } else if (deed == "delete itself") {
        EXPECT_EQ(test.submissions().size(), call == "missing" ? 0U : 1U);
      }
    });
  }
}

TEST(CarelessHost, MayReleaseTheSessionInACompletion) {
  using Completion = std::function<void(const std::optional<Error>&)>;
  const struct {
    std::function<void(ORNManualHearingTest&, const Completion&)> ask;
    bool isCalledFromCache;
  } table[] = {
      {[](auto& session, auto done) { session.setKV50MAC("AA", done); }, true},
      {[](auto& session, auto done) { session.setEarPlugModel("1", done); }, false},
      {[](auto& session, auto done) { session.getTestHistoryByMAC("AA", [done](auto error, auto) { done(error); }); },
       true},
      {[](auto& session, auto done) { session.postListenTestWithLeft({}, {}, false, 0, 0, {}, {}, {}, {}, {}, done); },
       true}};
  for (const auto& [ask, isCalledFromCache] : table) {
    for (const auto type : {SessionScript::Auto, SessionScript::Manual, SessionScript::Standard}) {
      for (const bool isAskedBefore : {false, true}) {
        SessionScript test(type);
        test.machine.urlSession->script("", {R"({"rspCode":0})", {}});
        if (isAskedBefore) ask(*test.session, [](auto&&) {});
        test.run(1);
        const std::weak_ptr<ORNManualHearingTest> life = test.session;
        ask(*test.session, [&](const std::optional<Error>&) { test.session.reset(); });
        test.run(1);
        EXPECT_EQ(life.expired(), isCalledFromCache || !isAskedBefore) << isCalledFromCache << type << isAskedBefore;
      }
    }
  }
}

TEST(FrequencyList, IsTakenAsItIsAndIsTheSevenWhereItIsEmpty) {
  const std::pair<std::vector<std::string>, const char*> table[] = {
      {{}, "172 R complete 125hz=90 250hz=90 500hz=90 1000hz=90 2000hz=90 4000hz=90 8000hz=90"},
      {{"1000hz", "1000hz", "2000hz", "1000hz"}, "52 R complete 1000hz=90 2000hz=90"},
      // What is no frequency is tested by the tone of 1000 Hz.
      {{"750hz", "abc", "", "99999999999999999999hz", "-1000hz"},
       "124 R complete -1000hz=90 =90 abc=90 750hz=90 99999999999999999999hz=90"}};
  for (const auto& [hzs, complete] : table) {
    SessionScript test(SessionScript::Auto);
    test.session->setTestHzs(hzs);
    test.session->startTest(kRight);
    test.run(250);
    EXPECT_EQ(test.takeTrace().back(), complete);
  }
}

TEST(ManualLevel, IsCutToARowAndNothingIsPlayedOutsideTheGrid) {
  const struct {
    const char *hz, *db, *played;
  } table[] = {{"1000hz", "40", "0 R 1000hz 40db"},
               {"1000hz", "12db", "0 R 1000hz 15db"},
               {"1000hz", "19", "0 R 1000hz 15db"},
               {"1000hz", "94", "0 R 1000hz 90db"},
               {"1000hz", "95db", ""},
               {"1000hz", "10db", ""},
               {"1000hz", "db", ""},
               {"1000hz", "-99999999999999999999", ""},
               {"750hz", "40", ""},
               {"", "40", ""},
               {"1000", "40", ""}};
  for (const auto path : {SessionScript::Earphones, SessionScript::Audiometer}) {
    for (const auto& [hz, db, played] : table) {
      SessionScript test(SessionScript::Manual, path);
      test.session->startTest(kRight);
      test.session->playAtHz("1000hz", "40");
      test.takeTrace();
      test.session->playAtHz(hz, db);
      EXPECT_EQ(test.takeTrace(), *played ? Lines{played} : Lines{}) << hz << " " << db;
      if (!*played) {
        EXPECT_FALSE(test.quiet1000->isPlaying);
      }
      test.run(1);
      if (path == SessionScript::Audiometer) {
        EXPECT_GT(test.loudest(0.6, 1), 0) << "a tone goes on";
      }
    }
  }
}

}  // namespace
}  // namespace orn
