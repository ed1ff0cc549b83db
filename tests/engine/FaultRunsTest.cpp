// Whole tests while something around them goes wrong: the user hears and is told the same as without the fault.

#include <algorithm>
#include <gmock/gmock.h>

#include "SessionScript.h"

namespace orn {
namespace {

using std::chrono::milliseconds;

/// The trace without its times; a tone that was presented again counts once.
Lines order(Lines trace) {
  for (std::string& line : trace) line.erase(0, line.find(' ') + 1);
  const auto isSameTone = [](const std::string& one, const std::string& next) {
    return one == next && one.find("->") == std::string::npos && one.find("complete") == std::string::npos;
  };
  trace.erase(std::unique(trace.begin(), trace.end(), isSameTone), trace.end());
  return trace;
}

TEST(FaultRuns, AToneWhoseEndComesVeryLateIsPresentedAgainUnlessItWasHeard) {
  for (const auto type : {SessionScript::Auto, SessionScript::Standard}) {
    for (const int late : {2100, 20000}) {
      for (const bool isHeard : {false, true}) {
        SessionScript test(type);
        if (isHeard) test.at(5, [&] { test.session->listened(); });
        test.at(7.5, [&] { test.machine.virtualTime->holdUp(milliseconds(late + 500)); });
        const Lines first = order(test.traceOfEar(kRight, 4.1)), next = order(test.trace(late / 1000.0 + 4));
        ASSERT_EQ(next.size(), 1U);
        EXPECT_EQ(next == first, !isHeard) << late;
      }
    }
  }
}

/// The trace of both ears, with a threshold of 35 dB.
Lines traceOfWholeTest(SessionScript& test) {
  test.session->setTestHzs({"1000hz", "4000hz"});
  test.hearsFrom(35);
  for (const bool isLeft : {kRight, kLeft}) {
    test.session->startTest(isLeft);
    const auto isOver = [&] { return isLeft ? test.session->isTestComplete() : test.session->isOneComplete(); };
    EXPECT_TRUE(test.machine.virtualTime->runUntil(isOver, std::chrono::hours(3)));
    test.run(5);
  }
  return test.takeTrace();
}

TEST(FaultRuns, AHoldUpAnywhereCostsTimeAndNoThreshold) {
  for (const auto type : {SessionScript::Auto, SessionScript::Standard}) {
    Lines wanted;
    for (const std::string place : {"nowhere", "tone", "dialog", "threshold", "between events"}) {
      for (const int span : {300, 3200, 9000}) {
        SessionScript test(type);
        // A dialog runs a loop of its own within the call.
        bool isOpen = false;
        const auto hold = [&isOpen, &time = *test.machine.virtualTime, isLoop = place == "dialog", span] {
          EXPECT_FALSE(std::exchange(isOpen, true)) << "a call within a call";
          isLoop ? time.runFor(milliseconds(span)) : time.holdUp(milliseconds(span));
          isOpen = false;
        };
        auto& tone = test.delegate->willTestAtHz;
        auto& threshold = test.delegate->willSelectedAtHz;
        if (place == "tone" || place == "dialog") tone = [hold, meet = tone](auto&&... call) { hold(), meet(call...); };
        if (place == "threshold") threshold = [hold, meet = threshold](auto&&... call) { meet(call...), hold(); };
        for (double at = 4.3; place == "between events" && at < 600; at += 5.9) test.at(at, hold);
        const Lines told = order(traceOfWholeTest(test));
        if (wanted.empty()) wanted = told;
        EXPECT_THAT(told.back(), testing::HasSubstr("complete L"));
        EXPECT_EQ(told, wanted) << type << place << span;
      }
    }
  }
}

TEST(FaultRuns, AToneHasItsWholeTimeFromWhenItCouldBeAnswered) {
  SessionScript test(SessionScript::Auto);
  const std::pair<double, int> holdUps[] = {{5, 2500},      // in mid-tone: 40 dB, due at 8
                                            {13.85, 1000},  // over the end of 50 dB, due at 14.5, judged at 15.5
                                            {19, 300}};     // 60 dB, due at 19.5
  for (const auto& [at, span] : holdUps) {
    test.at(at, [&test, span = span] { test.machine.virtualTime->holdUp(milliseconds(span)); });
  }
  test.at(21, [&] { test.session->listened(); });
  std::vector<double> times;
  for (const std::string& line : test.traceOfEar(kRight, 27)) times.push_back(std::stod(line));
  using testing::DoubleNear;
  EXPECT_THAT(times, testing::ElementsAre(DoubleNear(4, 0.1), DoubleNear(10.5, 0.1), DoubleNear(15.5, 0.2),
                                          DoubleNear(19.8, 0.3), DoubleNear(23.8, 0.3)));
}

TEST(FaultRuns, TwoSessionsInTurnOnTheOnePlayerDoNotHearEachOther) {
  SessionScript alone(SessionScript::Auto, SessionScript::Audiometer);
  traceOfWholeTest(alone);
  const auto& wanted = alone.machine.audioOutput->keptSamples();
  for (const auto type : {SessionScript::Auto, SessionScript::Manual}) {
    SessionScript test(SessionScript::Auto, SessionScript::Audiometer);
    const auto first = std::dynamic_pointer_cast<ORNManualHearingTest>(ORNHearingTest::initWithTestType(type));
    first->setKV50MAC("BB");
    first->setAb(SessionScript::record("-50"));
    first->startTest(kLeft);
    first->playAtHz("2000hz", "60");
    test.run(10);
    first->pauseTest();
    test.run(2);
    EXPECT_GT(test.loudest(0, 10), 0);
    // It does not silence the one that follows either.
    test.at(18, [&] { first->pauseTest(); });
    test.at(30, [&] { first->endTest(); });
    test.at(36, [&] { first->pauseTest(); });
    traceOfWholeTest(test);
    const auto& all = test.machine.audioOutput->keptSamples();
    EXPECT_TRUE(std::equal(all.begin() + 12 * 2 * 48000, all.end(), wanted.begin(), wanted.end()));
  }
}

}  // namespace
}  // namespace orn
