#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/RunLoop.h>

// What every run loop must do. A suite instantiates it with a type that has a `loop`, a finish() that ends run(), a
// run() that tells whether finish() was called in good time, and says whether its time is virtual.

namespace orn {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;

constexpr nanoseconds kGiveUp = 20s;

template <class Loop>
class RunLoopContract : public testing::Test {
 protected:
  /// An action that writes a word down.
  RunLoop::Action says(const std::string& word) {
    return [this, word] { said_ += word + " "; };
  }

  /// A timer of an hour's interval that fires at that time, once if it is left alone.
  std::shared_ptr<Timer> at(nanoseconds time, RunLoop::Action action) {
    auto timer = loop().scheduledTimer(1h, std::move(action));
    timer->setFireDate(time);
    return timer;
  }

  /// Runs until all that is due by then has been called.
  void runFor(nanoseconds span) {
    loop().performAfterDelay(span, [this] { time_.finish(); });
    ASSERT_TRUE(time_.run());
  }

  RunLoop& loop() { return *time_.loop; }

  std::string said_;
  Loop time_;
};

TYPED_TEST_SUITE_P(RunLoopContract);

TYPED_TEST_P(RunLoopContract, CallsInTheOrderOfDueTimeThenAge) {
  const nanoseconds start = this->loop().now();
  this->at(start + 9ms, this->says("last"));
  this->at(start + 5ms, this->says("old"));
  this->at(start + 2ms, this->says("first"));
  this->at(start + 5ms, this->says("young"));
  this->runFor(12ms);
  EXPECT_EQ(this->said_, "first old young last ");
}

TYPED_TEST_P(RunLoopContract, WhatIsPastIsDueAtTheNextTurnAndNeverWithinTheCall) {
  this->loop().performAfterDelay(0ns, this->says("zero"));
  this->loop().performAfterDelay(-1h, this->says("negative"));
  this->loop().performAfterDelay(nanoseconds::min(), this->says("lowest"));
  for (const nanoseconds past : {nanoseconds(-1ns), nanoseconds(-2h), nanoseconds::min()}) {
    this->at(past, this->says(std::to_string(past.count())));
  }
  EXPECT_EQ(this->said_, "");
  this->runFor(1ms);
  EXPECT_EQ(this->said_, std::to_string(INT64_MIN) + " -7200000000000 -1 zero negative lowest ");
}

TYPED_TEST_P(RunLoopContract, AParkedTimerWaitsForItsNewDate) {
  std::shared_ptr<Timer> timer;
  timer = this->loop().scheduledTimer(1ms, [&] {
    this->says("fired")();
    timer->setFireDate(RunLoop::distantFuture);
  });
  timer->setFireDate(RunLoop::distantFuture);
  this->runFor(5ms);
  EXPECT_EQ(this->said_, "");
  timer->setFireDate(this->loop().now());
  this->runFor(5ms);
  EXPECT_EQ(this->said_, "fired ");
}

TYPED_TEST_P(RunLoopContract, MissedFiringsAreMadeUpForByOne) {
  const nanoseconds date = this->loop().now() - 50ms;
  std::vector<nanoseconds> fired;
  const auto timer = this->loop().scheduledTimer(20ms, [&] {
    fired.push_back(this->loop().now());
    if (fired.size() == 2) this->time_.finish();
  });
  timer->setFireDate(date);
  ASSERT_TRUE(this->time_.run());
  EXPECT_GE(fired[1], date + 60ms);
}

TYPED_TEST_P(RunLoopContract, InvalidateFromWithinEndsTheTimerAndReleasesItsAction) {
  auto owned = std::make_shared<int>();
  const std::weak_ptr<int> watched = owned;
  std::shared_ptr<Timer> timer;
  timer = this->loop().scheduledTimer(1ms, [this, &timer, owned = std::move(owned)] {
    timer->invalidate();
    this->says(owned ? "whole" : "broken")();
    timer->setFireDate(0ns);
  });
  this->runFor(10ms);
  EXPECT_EQ(this->said_, "whole ");
  EXPECT_TRUE(watched.expired());
  timer->setFireDate(0ns);
  timer->invalidate();
  this->runFor(1ms);
  EXPECT_EQ(this->said_, "whole ");
}

TYPED_TEST_P(RunLoopContract, InvalidateEndsATimerThatIsDueAndReleasesItsActionAtOnce) {
  auto owned = std::make_shared<int>();
  const std::weak_ptr<int> watched = owned;
  std::shared_ptr<Timer> second;
  this->at(0ns, [&] {
    this->says("first")();
    second->invalidate();
    EXPECT_TRUE(watched.expired());
  });
  second = this->at(0ns, [say = this->says("second"), owned = std::move(owned)] { say(); });
  this->runFor(1ms);
  EXPECT_EQ(this->said_, "first ");
}

TYPED_TEST_P(RunLoopContract, HandedOverCallsComeInOrderAndBeforeTimersThatAreDue) {
  this->at(0ns, this->says("timer"));
  this->loop().dispatchAsync([this] {
    this->says("a")();
    this->loop().dispatchAsync(this->says("c"));
  });
  this->loop().dispatchAsync(this->says("b"));
  EXPECT_EQ(this->said_, "");
  this->runFor(1ms);
  EXPECT_EQ(this->said_, "a b c timer ");
}

TYPED_TEST_P(RunLoopContract, OtherThreadsHandCallsToTheMainThread) {
  constexpr int calls = 1000;
  const auto mainThread = std::this_thread::get_id();
  std::vector<int> made;
  std::thread other;
  this->loop().performAfterDelay(0ns, [&] {
    other = std::thread([&] {
      for (int i = 0; i < calls; ++i) {
        this->loop().dispatchAsync([&made, &mainThread, i] {
          if (std::this_thread::get_id() == mainThread) made.push_back(i);
        });
      }
      this->loop().dispatchAsync([this] { this->time_.finish(); });
    });
    if (TypeParam::kIsVirtual) other.join();  // virtual time waits for nobody
  });
  EXPECT_TRUE(this->time_.run());
  if (other.joinable()) other.join();
  ASSERT_EQ(made.size(), calls);
  for (int i = 0; i < calls; ++i) ASSERT_EQ(made[static_cast<std::size_t>(i)], i);
}

TYPED_TEST_P(RunLoopContract, ALoopThatGoesReleasesWhatWaitsAndLeavesHandlesHarmless) {
  auto owned = std::make_shared<int>();
  const std::weak_ptr<int> watched = owned;
  const auto timer = this->loop().scheduledTimer(1h, [owned] {});
  this->loop().performAfterDelay(1h, [owned] {});
  this->loop().dispatchAsync([owned = std::move(owned)] {});
  EXPECT_FALSE(watched.expired());
  this->time_.loop.reset();
  EXPECT_TRUE(watched.expired());
  timer->setFireDate(0ns);
  timer->invalidate();
}

REGISTER_TYPED_TEST_SUITE_P(RunLoopContract, CallsInTheOrderOfDueTimeThenAge,
                            WhatIsPastIsDueAtTheNextTurnAndNeverWithinTheCall, AParkedTimerWaitsForItsNewDate,
                            MissedFiringsAreMadeUpForByOne, InvalidateFromWithinEndsTheTimerAndReleasesItsAction,
                            InvalidateEndsATimerThatIsDueAndReleasesItsActionAtOnce,
                            HandedOverCallsComeInOrderAndBeforeTimersThatAreDue, OtherThreadsHandCallsToTheMainThread,
                            ALoopThatGoesReleasesWhatWaitsAndLeavesHandlesHarmless);

}  // namespace orn
