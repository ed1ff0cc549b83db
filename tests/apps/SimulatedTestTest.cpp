#include "simulation/runs/SimulatedTest.h"

#include <gmock/gmock.h>

#include "simulation/calibration/SampleCalibration.h"

namespace orn::simulation {
namespace {

TEST(SimulatedTest, EveryToneLeavesTheOutputAtItsLevelAndItsSide) {
  for (const auto path : {OutputPath::Audiometer, OutputPath::Earphones}) {
    for (const double threshold : {-30.0, 120.0}) {  // the quiet and the loud half of the scale
      TestPlan plan;
      plan.path = path;
      plan.calibrationReply = sampleReply(path);
      plan.frequencies = {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz"};
      plan.listener.thresholdElsewhere = threshold;
      const TestOutcome outcome = runSimulatedTest(plan);
      ASSERT_TRUE(outcome.isComplete) << outcome.failure;
      for (const Presentation& one : outcome.presentations) {
        ASSERT_TRUE(one.measured) << one.hz << one.db;
        EXPECT_EQ(std::to_string(one.measured->hz) + "hz", one.hz);
        EXPECT_NEAR(one.measured->level, std::stod(one.db), 1.0) << one.hz;
        const Channel side = one.isLeft ? Channel::Left : Channel::Right;
        EXPECT_EQ(one.measured->channel, path == OutputPath::Audiometer ? Channel::Both : side);
      }
    }
  }
}

}  // namespace
}  // namespace orn::simulation
