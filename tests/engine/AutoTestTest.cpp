#include <gmock/gmock.h>

#include <ORNHearingTestSDK/engine/ORNAutoHearingTest.h>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct AutoTest : SessionScript {
  explicit AutoTest(std::vector<std::string> hzs = {"1000hz"}, Path path = Earphones) : SessionScript(Auto, path) {
    session->setTestHzs(std::move(hzs));
  }
};

TEST(AutoTimes, GiveEachToneItsTimeAndTheFirstOfAFurtherFrequencyASecondLess) {
  AutoTest test({"1000hz", "2000hz"});
  test.presses("HNN NHH");
  EXPECT_THAT(
      test.traceOfEar(kRight, 60),
      ElementsAre("4 R 1000hz 40db", "8 R 1000hz 30db", "12 R 1000hz 35db", "16 R -> 1000hz 40db", "17 R 2000hz 40db",
                  "20 R 2000hz 50db", "24 R 2000hz 45db", "28 R -> 2000hz 45db", "28 R complete 1000hz=40 2000hz=45"));
}

TEST(AutoTimes, FollowTheTimeThatIsStoredAtTheStartAboveFourSeconds) {
  const std::pair<std::optional<DefaultsValue>, int> table[] = {
      {std::nullopt, 4}, {std::int64_t{-30}, 4}, {std::int64_t{5}, 5}, {std::string("30"), 30}};
  for (const auto& [stored, seconds] : table) {
    AutoTest test;
    if (stored) test.machine.userDefaults->setValue("BOFANGSHICHANG", *stored);
    test.at(1, [&, other = seconds == 4 ? 30 : 4] {
      test.machine.userDefaults->setValue("BOFANGSHICHANG", std::int64_t{other});
    });
    EXPECT_THAT(test.traceOfEar(kRight, 3 * seconds - 1), ElementsAre(std::to_string(seconds) + " R 1000hz 40db",
                                                                      std::to_string(2 * seconds) + " R 1000hz 50db"));
  }
}

/// The trace of a right ear with two frequencies up to 22 s, in which something is done at the given time.
Lines traceWith(const std::string& letters, double at, const std::function<void(AutoTest&)>& what) {
  AutoTest test({"1000hz", "2000hz"});
  test.presses(letters);
  test.at(at, [&] { what(test); });
  return test.traceOfEar(kRight, 22);
}

TEST(AutoPress, CountsAnyTimeWithinTheToneAndOnce) {
  const auto press = [](AutoTest& test) { test.session->listened(); };
  const Lines heard = traceWith("HNN", 30, press);
  EXPECT_EQ(heard.back(), "20 R 2000hz 50db");
  for (const double at : {4.001, 7.999}) EXPECT_EQ(traceWith("NNN", at, press), heard) << at;
  // Again in the first tone, before it, and between two frequencies.
  for (const double at : {6.0, 2.0, 16.5}) EXPECT_EQ(traceWith("HNN", at, press), heard) << at;
  const auto tick = [](AutoTest& test) { dynamic_cast<ORNAutoHearingTest&>(*test.session).timerUpdate(); };
  EXPECT_EQ(traceWith("NNN", 6, tick)[1], "6 R 1000hz 50db") << "a tick of the host's";
}

TEST(AutoPause, CutsTheToneShortAndJudgesItAtTheNextContinue) {
  for (const auto& [letters, next] : {std::pair("H N", "100 R 1000hz 35db"), std::pair("H H", "100 R 1000hz 20db")}) {
    AutoTest test;
    test.presses(letters);
    test.at(9, [&] { test.session->pauseTest(); });
    test.at(100, [&] { test.session->continueTest(); });
    EXPECT_THAT(test.traceOfEar(kRight, 50), ElementsAre("4 R 1000hz 40db", "8 R 1000hz 30db"));
    EXPECT_FALSE(test.quiet1000->isPlaying);
    EXPECT_THAT(test.trace(53), ElementsAre(next));
    EXPECT_THAT(test.trace(2).at(0), testing::StartsWith("104 "));
  }
}

TEST(AutoPause, BetweenTwoFrequenciesIsOvertakenByTheTone) {
  EXPECT_EQ(traceWith("HNN", 16.5, [](AutoTest& test) { test.session->pauseTest(); }).back(), "17 R 2000hz 40db");
}

TEST(AutoStart, InMidEarGoesOnFromTheColumnAndNeverCompletes) {
  AutoTest test({"1000hz", "2000hz"});
  test.presses("HNN");
  test.at(18, [&] { test.session->startTest(kRight); });
  EXPECT_EQ(test.traceOfEar(kRight, 100).back(), "42 R -> 2000hz 90db");
  EXPECT_EQ(text(*test.session->getTestResult(kRight)), "2000hz=90");
}

TEST(AutoStart, OnAnEarThatHasBeenRunMeetsItsMarks) {
  AutoTest test;
  test.presses("H N H");
  EXPECT_EQ(test.traceOfEar(kRight, 20).back(), "16 R complete 1000hz=35");
  // 40 dB counts as heard without a press. 30 dB has been judged, so the step down is 5 dB; 35 dB counts as heard too.
  EXPECT_THAT(test.traceOfEar(kRight, 20),
              ElementsAre("24 R 1000hz 40db", "28 R 1000hz 35db", "32 R -> 1000hz 35db", "32 R complete 1000hz=35"));
}

TEST(AutoCompletion, SubmitsOnceThoughNobodyListens) {
  for (const auto path : {SessionScript::Earphones, SessionScript::Audiometer}) {
    AutoTest test({"1000hz"}, path);
    const bool isOnEarphones = path == SessionScript::Earphones;
    test.session->setDelegate(isOnEarphones ? nullptr : std::make_shared<ORNHearingTestDelegate>());
    for (const bool isLeft : {kRight, kLeft}) {
      EXPECT_THAT(test.submissions(), IsEmpty());
      test.traceOfEar(isLeft, 100);
    }
    EXPECT_THAT(test.submissions(), ElementsAre(isOnEarphones ? "L 90 R 90 model" : "L 90 R 90 AA:BB:CC:DD:EE:FF"));
  }
}

TEST(AutoCompletion, LetsTheOtherEarStartFromWithinTheCall) {
  AutoTest test({"2000hz", "1000hz"});
  test.hearsFrom(15);
  test.delegate->oneEarCompleteWithResult = [](ORNHearingTest& session, const EarResult&, bool isLeft) {
    EXPECT_EQ(session.getTestProgress(), 1);
    session.startTest(!isLeft);
    EXPECT_EQ(session.getTestProgress(), 0);
  };
  EXPECT_EQ(test.traceOfEar(kRight, 36.5).back(), "36 R -> 1000hz 15db");
  const Lines left = test.trace(100);
  EXPECT_EQ(left.front(), "40 L 2000hz 40db");
  EXPECT_EQ(left.back(), "72 complete L 1000hz=15 2000hz=15 R 1000hz=15 2000hz=15");
}

TEST(AutoLife, IsHeldByTheClockUntilTheEarIsOver) {
  AutoTest test;
  const std::weak_ptr<ORNManualHearingTest> life = test.session;
  test.session->startTest(kRight);
  test.session.reset();
  test.run(27.9);
  EXPECT_FALSE(life.expired());
  EXPECT_EQ(test.trace(0.2).back(), "28 R complete 1000hz=90");
  EXPECT_TRUE(life.expired());
}

TEST(AutoLife, IsNotHeldByAPauseBeforeTheStartOrAfterTheEnd) {
  for (const bool isOver : {false, true}) {
    AutoTest test;
    const std::weak_ptr<ORNManualHearingTest> life = test.session;
    if (isOver) test.traceOfEar(kRight, 30), test.traceOfEar(kLeft, 30);
    test.session->pauseTest();
    test.session.reset();
    EXPECT_TRUE(life.expired()) << isOver;
  }
}

}  // namespace
}  // namespace orn
