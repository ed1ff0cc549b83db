#include <vector>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedRunLoop.h>

namespace orn {
namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;

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

}  // namespace
}  // namespace orn
