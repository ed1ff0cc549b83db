// Whole tests while something around them goes wrong: what the user hears and is told stays as it is without the fault.

#include <algorithm>
#include <gmock/gmock.h>

#include "SessionScript.h"

namespace orn {
namespace {

/// Both ears, with a threshold of 35 dB; the trace of what the delegate was told.
std::vector<std::string> wholeTest(SessionScript& test) {
  test.session->setTestHzs({"1000hz", "4000hz"});
  test.hearsFrom(35);
  for (const bool isLeft : {false, true}) {
    test.session->startTest(isLeft);
    test.run(50);
  }
  return test.takeTrace();
}

/// What was told, without the times; a tone that was presented again counts once.
std::vector<std::string> order(std::vector<std::string> trace) {
  for (std::string& line : trace) line.erase(0, line.find(' ') + 1);
  const auto isSameTone = [](const std::string& one, const std::string& next) {
    return one == next && one.find("->") == std::string::npos && one.find("complete") == std::string::npos;
  };
  trace.erase(std::unique(trace.begin(), trace.end(), isSameTone), trace.end());
  return trace;
}

TEST(FaultRuns, AToneWhoseEndComesVeryLateIsPresentedAgainUnlessItWasHeard) {
  for (const auto type : {SessionScript::Auto, SessionScript::Standard}) {
    for (const double late : {2.1, 20.0}) {
      for (const bool isHeard : {false, true}) {
        SessionScript test(type);
        test.session->startTest(false);
        if (isHeard) test.at(5, [&] { test.session->listened(); });
        test.at(7.5, [&] { test.machine.virtualTime->holdUp(std::chrono::milliseconds(int((late + 0.5) * 1000))); });
        test.run(4.1);
        const std::string first = order(test.takeTrace()).back();
        test.run(late + 4);
        const auto told = order(test.takeTrace());
        ASSERT_EQ(told.size(), 1U);
        EXPECT_EQ(told.front() == first, !isHeard) << late;
      }
    }
  }
}

TEST(FaultRuns, AHoldUpAnywhereCostsTimeAndNoThreshold) {
  for (const auto type : {SessionScript::Auto, SessionScript::Standard}) {
    std::vector<std::string> wanted;
    for (const std::string place : {"nowhere", "tone", "dialog", "threshold", "between events"}) {
      for (const int span : {300, 1000, 3200, 9000}) {
        SessionScript test(type);
        test.session->setTestHzs({"1000hz", "4000hz"});
        test.hearsFrom(35);
        // A dialog is a loop of the host's own within the call.
        const auto hold = [&time = *test.machine.virtualTime, isLoop = place == "dialog", span] {
          isLoop ? time.runFor(std::chrono::milliseconds(span)) : time.holdUp(std::chrono::milliseconds(span));
        };
        auto& tone = test.delegate->willTestAtHz;
        auto& threshold = test.delegate->willSelectedAtHz;
        if (place == "tone" || place == "dialog") tone = [hold, meet = tone](auto&&... call) { hold(), meet(call...); };
        if (place == "threshold") threshold = [hold, meet = threshold](auto&&... call) { meet(call...), hold(); };
        for (double at = 4.3; place == "between events" && at < 600; at += 5.9) test.at(at, hold);
        for (const bool isLeft : {false, true}) {
          test.session->startTest(isLeft);
          const auto isOver = [&] { return isLeft ? test.session->isTestComplete() : test.session->isOneComplete(); };
          EXPECT_TRUE(test.machine.virtualTime->runUntil(isOver, std::chrono::hours(3)));
          test.run(5);
        }
        const auto told = order(test.takeTrace());
        if (wanted.empty()) wanted = told;
        EXPECT_THAT(told.back(), testing::HasSubstr("complete L"));
        EXPECT_EQ(told, wanted) << type << place << span;
      }
    }
  }
}

TEST(FaultRuns, AToneHasItsWholeTimeFromWhenItCouldBeAnswered) {
  SessionScript test(SessionScript::Auto);
  test.session->setTestHzs({"1000hz", "4000hz"});
  const auto holdUp = [&](double at, int milliseconds) {
    test.at(at, [&test, milliseconds] { test.machine.virtualTime->holdUp(std::chrono::milliseconds(milliseconds)); });
  };
  holdUp(5, 2500);      // in mid-tone: 40 dB, due at 8
  holdUp(13.85, 1000);  // over the end of 50 dB, due at 14.5, which is judged at 15.5
  holdUp(19, 300);      // 60 dB, due at 19.5
  test.at(21, [&] { test.session->listened(); });
  test.session->startTest(false);
  test.run(27);
  const auto at = [](const std::string& line) { return std::stod(line); };
  const auto trace = test.takeTrace();
  ASSERT_EQ(trace.size(), 5U);
  EXPECT_NEAR(at(trace[1]), 10.5, 0.1);
  EXPECT_NEAR(at(trace[2]), 15.5, 0.2);
  EXPECT_NEAR(at(trace[3]), 19.8, 0.3);
  EXPECT_NEAR(at(trace[4]), 23.8, 0.3);
}

TEST(FaultRuns, TwoSessionsInTurnOnTheOnePlayerDoNotHearEachOther) {
  SessionScript alone(SessionScript::Auto, SessionScript::Audiometer);
  wholeTest(alone);
  // A timed session that is left paused lives on; a manual one goes.
  for (const auto type : {SessionScript::Auto, SessionScript::Manual}) {
    SessionScript test(SessionScript::Auto, SessionScript::Audiometer);
    auto first = std::dynamic_pointer_cast<ORNManualHearingTest>(ORNHearingTest::initWithTestType(type));
    first->setKV50MAC("BB");
    first->setAb(SessionScript::record("-50"));
    first->startTest(true);
    first->playAtHz("2000hz", "60");
    test.run(10);
    first->pauseTest();
    const std::weak_ptr<ORNManualHearingTest> life = std::exchange(first, nullptr);
    EXPECT_EQ(life.expired(), type == SessionScript::Manual);
    test.run(2);
    EXPECT_GT(test.loudest(0, 10), 0);
    wholeTest(test);
    const auto &all = test.machine.audioOutput->keptSamples(), &wanted = alone.machine.audioOutput->keptSamples();
    EXPECT_TRUE(std::equal(all.begin() + 12 * 2 * 48000, all.end(), wanted.begin(), wanted.end()));
  }
}

TEST(FaultRuns, ASessionThatIsOverDoesNotSilenceTheNextOne) {
  SessionScript test(SessionScript::Auto, SessionScript::Audiometer);
  wholeTest(test);
  const auto next = std::dynamic_pointer_cast<ORNManualHearingTest>(ORNHearingTest::initWithTestType(0));
  next->setKV50MAC("BB");
  next->setAb(SessionScript::record("-50"));
  next->startTest(false);
  test.run(5);
  test.session->pauseTest();
  test.session->endTest();
  test.session->pauseTest();
  test.run(1);
  EXPECT_GT(test.loudest(105.5, 106), 0);
  next->endTest();
}

}  // namespace
}  // namespace orn
