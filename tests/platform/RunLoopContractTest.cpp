#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedRunLoop.h>

namespace orn {
namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;

constexpr nanoseconds kGiveUp = 20s;

/// A loop in virtual time, until finish() is called.
struct InVirtualTime {
  std::unique_ptr<SimulatedRunLoop> loop = std::make_unique<SimulatedRunLoop>();
  bool finished = false;

  void finish() { finished = true; }
  bool run() {
    finished = false;
    return loop->runUntil([this] { return finished; }, kGiveUp);
  }
};

/// A loop in real time; it only ever waits for what must come.
struct InRealTime {
  std::unique_ptr<LinuxRunLoop> loop = std::make_unique<LinuxRunLoop>();
  bool finished = false;

  void finish() {
    finished = true;
    loop->stop();
  }
  bool run() {
    finished = false;
    loop->performAfterDelay(kGiveUp, [this] { loop->stop(); });
    loop->run();
    return finished;
  }
};

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

using Loops = testing::Types<InVirtualTime, InRealTime>;
TYPED_TEST_SUITE(RunLoopContract, Loops);

TYPED_TEST(RunLoopContract, CallsInTheOrderOfDueTimeThenAge) {
  const nanoseconds start = this->loop().now();
  this->at(start + 9ms, this->says("last"));
  this->at(start + 5ms, this->says("old"));
  this->at(start + 2ms, this->says("first"));
  this->at(start + 5ms, this->says("young"));
  this->runFor(12ms);
  EXPECT_EQ(this->said_, "first old young last ");
}

TYPED_TEST(RunLoopContract, WhatIsPastIsDueAtTheNextTurnAndNeverWithinTheCall) {
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

TYPED_TEST(RunLoopContract, AParkedTimerWaitsForItsNewDate) {
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

TYPED_TEST(RunLoopContract, MissedFiringsAreMadeUpForByOne) {
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

TYPED_TEST(RunLoopContract, InvalidateFromWithinEndsTheTimerAndReleasesItsAction) {
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

TYPED_TEST(RunLoopContract, InvalidateEndsATimerThatIsDueAndReleasesItsActionAtOnce) {
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

TYPED_TEST(RunLoopContract, HandedOverCallsComeInOrderAndBeforeTimersThatAreDue) {
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

TYPED_TEST(RunLoopContract, OtherThreadsHandCallsToTheMainThread) {
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
    if (std::is_same_v<TypeParam, InVirtualTime>) other.join();  // virtual time waits for nobody
  });
  EXPECT_TRUE(this->time_.run());
  if (other.joinable()) other.join();
  ASSERT_EQ(made.size(), calls);
  for (int i = 0; i < calls; ++i) ASSERT_EQ(made[static_cast<std::size_t>(i)], i);
}

TYPED_TEST(RunLoopContract, ALoopThatGoesReleasesWhatWaitsAndLeavesHandlesHarmless) {
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

TEST(SimulatedRunLoop, JumpsFromCallToCallAndStandsAtTheEndOfTheSpan) {
  SimulatedRunLoop loop;
  std::vector<nanoseconds> called;
  const auto timer = loop.scheduledTimer(3ms, [&] { called.push_back(loop.now()); });
  loop.performAfterDelay(7ms, [&] { called.push_back(loop.now()); });
  loop.runFor(10ms);
  EXPECT_EQ(called, (std::vector<nanoseconds>{3ms, 6ms, 7ms, 9ms}));
  EXPECT_EQ(loop.now(), 10ms);
  timer->setFireDate(11ms);
  loop.runFor(5ms);
  EXPECT_EQ(called.back(), 14ms);
  timer->setFireDate(4ms);  // missed: 4, 7, 10, 13; next in rhythm: 16
  loop.runFor(1ms);
  EXPECT_EQ(std::vector(called.end() - 2, called.end()), (std::vector<nanoseconds>{15ms, 16ms}));
}

TEST(LinuxRunLoop, StopEndsRunAfterTheCallThatIsGoingOn) {
  LinuxRunLoop loop;
  std::string said;
  loop.dispatchAsync([&] {
    said += "a";
    loop.stop();
  });
  loop.dispatchAsync([&] {
    said += "b";
    loop.stop();
  });
  loop.run();
  EXPECT_EQ(said, "a");
  loop.run();
  EXPECT_EQ(said, "ab");
  loop.stop();
  loop.dispatchAsync([&] { said += "c"; });
  loop.run();
  EXPECT_EQ(said, "ab");
}

}  // namespace
}  // namespace orn
