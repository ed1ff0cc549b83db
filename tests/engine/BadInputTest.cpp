#include <utility>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MissingCalibration, OfALaterFrequencyKeepsWhatWasFound) {
  SessionScript test(SessionScript::Auto);
  test.session->setTestHzs({"1000hz", "2000hz"});
  const auto record = SessionScript::record("-60");
  record->setS2000(std::nullopt);
  test.session->setRightVolue(record);
  test.presses("HNH NHH");
  EXPECT_EQ(test.traceOfEar(kRight, 40).back(), "17 R missing calibration");
  test.session->setRightVolue(SessionScript::record("-60"));
  test.session->continueTest();
  EXPECT_EQ(test.trace(40).back(), "52 R complete 1000hz=35 2000hz=45");
}

TEST(MissingOutput, OfOneEarLeavesNothingBehindForTheOther) {
  for (const auto& [type, tone] :
       {std::pair(SessionScript::Auto, "14 L 1000hz 40db"), std::pair(SessionScript::Standard, "14 L 1000hz 60db")}) {
    SessionScript test(type);
    test.machine.audioOutput->setDevicePresent(false);
    EXPECT_THAT(test.traceOfEar(kRight, 10), ElementsAre("4 R missing output"));
    test.machine.audioOutput->setDevicePresent(true);
    EXPECT_THAT(test.traceOfEar(kLeft, 4.5), ElementsAre(tone));
    const auto& playing = test.quiet1000->isPlaying ? test.quiet1000 : test.loud1000;
    EXPECT_TRUE(playing->isPlaying && playing->pan() < 0) << "the left ear's own tone";
  }
}

/// A test of both ears in which nothing is heard, with a delegate that does something in one of its calls.
struct Careless : SessionScript {
  explicit Careless(Type kind) : SessionScript(kind), type(kind) { session->setTestHzs({"1000hz", "2000hz"}); }

  void doIn(const std::string& call, const std::function<void()>& what) {
    const auto deed = [what](auto&&...) { what(); };
    if (call == "tone") delegate->willTestAtHz = deed;
    if (call == "threshold") delegate->willSelectedAtHz = deed;
    if (call == "ear") delegate->oneEarCompleteWithResult = deed;
    if (call == "test") delegate->completeWithLeftResult = deed;
    if (call == "missing") delegate->toneMissing = deed, session->setRightVolue(nullptr);
  }

  /// If there still is a session.
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

void forEachCall(const std::function<void(Careless& test, const std::string& call)>& meet) {
  for (const auto type : {SessionScript::Auto, SessionScript::Manual, SessionScript::Standard}) {
    for (const std::string call : {"tone", "threshold", "ear", "test", "missing"}) {
      Careless test(type);
      SCOPED_TRACE(std::to_string(type) + " " + call);
      meet(test, call);
    }
  }
}

TEST(CarelessDelegate, MayReleaseTheSessionOrDeleteItselfInEachOfItsCalls) {
  forEachCall([](Careless& test, const std::string& call) {
    const std::weak_ptr<ORNManualHearingTest> life = test.session;
    test.doIn(call, [&test] { test.session.reset(); });
    test.go();
    // A timed test that waits for its calibration is paused, and stays alive meanwhile.
    EXPECT_EQ(life.expired(), test.type == SessionScript::Manual || call != "missing");
  });
  forEachCall([](Careless& test, const std::string& call) {
    test.doIn(call, [&test, kept = std::string("of the delegate's own")] {
      test.delegate.reset();
      EXPECT_EQ(kept, "of the delegate's own");
    });
    test.go();
    EXPECT_EQ(test.submissions().size(), call == "missing" ? 0U : 1U);
  });
}

TEST(CarelessDelegate, HearsNothingOfATestThatItHasEnded) {
  for (const bool isReleased : {false, true}) {
    forEachCall([isReleased](Careless& test, const std::string& call) {
      const std::weak_ptr<ORNManualHearingTest> life = test.session;
      int calls = 0;
      const int last = call == "threshold" && !isReleased ? 4 : 1;
      test.doIn(call, [&] {
        if (++calls != last) return;
        test.takeTrace();
        test.session->endTest();
        test.session->listened();
        test.session->continueTest();
        if (isReleased) test.session.reset();
      });
      test.go();
      EXPECT_EQ(calls, last);
      EXPECT_THAT(test.takeTrace(), IsEmpty());
      EXPECT_THAT(test.submissions(), IsEmpty());
      EXPECT_EQ(life.expired(), isReleased);
    });
  }
}

TEST(CarelessHost, MayReleaseTheSessionInACompletion) {
  using Completion = std::function<void(const std::optional<Error>&)>;
  const std::function<void(ORNManualHearingTest&, const Completion&)> table[] = {
      [](auto& session, auto done) { session.setKV50MAC("AA", done); },
      [](auto& session, auto done) { session.setEarPlugModel("1", done); },
      [](auto& session, auto done) { session.getTestHistoryByMAC("AA", [done](auto error, auto) { done(error); }); },
      [](auto& session, auto done) { session.postListenTestWithLeft({}, {}, false, 0, 0, {}, {}, {}, {}, {}, done); }};
  for (const auto& ask : table) {
    for (const bool isAskedBefore : {false, true}) {  // then the calibration comes from the cache
      SessionScript test(SessionScript::Auto);
      test.machine.urlSession->script("", {R"({"rspCode":0})", {}});
      if (isAskedBefore) ask(*test.session, [](auto&&) {});
      test.run(1);
      const std::weak_ptr<ORNManualHearingTest> life = test.session;
      bool isCalled = false;
      ask(*test.session, [&](auto&&) { isCalled = true, test.session.reset(); });
      test.run(1);
      EXPECT_EQ(life.expired(), isCalled);
    }
  }
}

TEST(FrequencyList, IsTakenAsGivenAndMeansTheSevenIfEmpty) {
  const std::pair<std::vector<std::string>, const char*> table[] = {
      {{}, "172 R complete 125hz=90 250hz=90 500hz=90 1000hz=90 2000hz=90 4000hz=90 8000hz=90"},
      {{"1000hz", "1000hz", "2000hz", "1000hz"}, "52 R complete 1000hz=90 2000hz=90"},
      // A key that is not a frequency is tested by the tone of 1000 Hz.
      {{"750hz", "abc", "", "99999999999999999999hz", "-1000hz"},
       "124 R complete -1000hz=90 =90 abc=90 750hz=90 99999999999999999999hz=90"}};
  for (const auto& [hzs, complete] : table) {
    SessionScript test(SessionScript::Auto);
    test.session->setTestHzs(hzs);
    EXPECT_EQ(test.traceOfEar(kRight, 250).back(), complete);
  }
}

TEST(ManualLevel, IsCutToARowAndNothingIsPlayedOutsideTheGrid) {
  const std::tuple<const char*, const char*, std::string> table[] = {
      {"1000hz", "40", "40db"}, {"1000hz", "12db", "15db"},
      {"1000hz", "19", "15db"}, {"1000hz", "94", "90db"},
      {"1000hz", "95db", ""},   {"1000hz", "10db", ""},
      {"1000hz", "db", ""},     {"1000hz", "-99999999999999999999", ""},
      {"750hz", "40", ""},      {"", "40", ""},
      {"1000", "40", ""}};
  for (const auto& [hz, db, played] : table) {
    SessionScript test(SessionScript::Manual, SessionScript::Audiometer);
    test.session->startTest(kRight);
    test.session->playAtHz("1000hz", "40");
    test.takeTrace();
    test.session->playAtHz(hz, db);
    EXPECT_EQ(test.trace(1), played.empty() ? Lines() : Lines{"0 R 1000hz " + played}) << hz << " " << db;
    EXPECT_GT(test.loudest(0.6, 1), 0) << "a tone goes on";
  }
}

}  // namespace
}  // namespace orn
