#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedRunLoop.h>

#include "RunLoopContract.h"

namespace orn {
namespace {

/// A loop in virtual time, until finish() is called.
struct InVirtualTime {
  std::unique_ptr<SimulatedRunLoop> loop = std::make_unique<SimulatedRunLoop>();
  bool finished = false;
  static constexpr bool kIsVirtual = true;

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
  static constexpr bool kIsVirtual = false;

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

using Loops = testing::Types<InVirtualTime, InRealTime>;
INSTANTIATE_TYPED_TEST_SUITE_P(Loops, RunLoopContract, Loops);

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
