#include "simulation/runs/SimulatedTest.h"

#include <gmock/gmock.h>

#include <string>

#include "simulation/calibration/SampleCalibration.h"

namespace orn::simulation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

TestPlan planFor(TestType type, OutputPath path) {
  TestPlan plan;
  plan.type = type;
  plan.path = path;
  plan.calibrationReply = sampleReply(path);
  plan.listener.right = {{500, 30}, {1000, 35}, {2000, 42.5}, {4000, 61}};
  plan.listener.left = {{500, 17}, {1000, 20}, {2000, 27.5}, {4000, 88}};
  return plan;
}

class BothPaths : public testing::TestWithParam<OutputPath> {};
INSTANTIATE_TEST_SUITE_P(Paths, BothPaths, testing::Values(OutputPath::Audiometer, OutputPath::Earphones));

TEST_P(BothPaths, AutomaticTestFindsTheLowestLevelsHeard) {
  const TestOutcome outcome = runSimulatedTest(planFor(TestType::Automatic, GetParam()));
  ASSERT_TRUE(outcome.isComplete) << outcome.failure;
  EXPECT_THAT(outcome.right,
              ElementsAre(Pair("500hz", "30"), Pair("1000hz", "35"), Pair("2000hz", "45"), Pair("4000hz", "65")));
  EXPECT_THAT(outcome.left,
              ElementsAre(Pair("500hz", "20"), Pair("1000hz", "20"), Pair("2000hz", "30"), Pair("4000hz", "90")));
}

TEST_P(BothPaths, StandardTestReportsItsRetest) {
  const TestOutcome outcome = runSimulatedTest(planFor(TestType::Standard, GetParam()));
  ASSERT_TRUE(outcome.isComplete) << outcome.failure;
  const bool isLowered = GetParam() == OutputPath::Audiometer;  // 20 dB, by the retest's scale
  EXPECT_THAT(outcome.right, ElementsAre(Pair("125hz", "20"), Pair("250hz", "20"), Pair("500hz", "30"),
                                         Pair("1000hz", isLowered ? "15" : "35"), Pair("2000hz", "45"),
                                         Pair("4000hz", "65"), Pair("8000hz", "20")));
  EXPECT_EQ(outcome.left.at("1000hz"), isLowered ? "0" : "20");
}

TEST_P(BothPaths, EveryToneLeavesTheOutputAtItsLevelAndItsSide) {
  TestPlan plan = planFor(TestType::Automatic, GetParam());
  plan.frequencies = {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz"};
  for (const double threshold : {-30.0, 120.0}) {  // the quiet and the loud half of the scale
    plan.listener.left = plan.listener.right = {};
    plan.listener.thresholdElsewhere = threshold;
    for (const Presentation& one : runSimulatedTest(plan).presentations) {
      ASSERT_TRUE(one.measured) << one.hz << one.db;
      EXPECT_EQ(std::to_string(one.measured->hz) + "hz", one.hz);
      EXPECT_NEAR(one.measured->level, std::stod(one.db), 1.0) << one.hz;
      const Channel side = one.isLeft ? Channel::Left : Channel::Right;
      EXPECT_EQ(one.measured->channel, GetParam() == OutputPath::Audiometer ? Channel::Both : side);
    }
  }
}

TEST(SimulatedTest, MissingEarphoneValueEndsTheTestWithoutALevel) {
  TestPlan plan = planFor(TestType::Automatic, OutputPath::Earphones);
  plan.calibrationReply = R"({"rspCode":0,"deviceVolumeIOS":[{"ear":1,"s1000":"x"},{"ear":2}]})";
  const TestOutcome outcome = runSimulatedTest(plan);
  EXPECT_FALSE(outcome.isComplete);
  EXPECT_THAT(outcome.failure, HasSubstr("right ear"));
  EXPECT_TRUE(outcome.presentations.empty());
}

}  // namespace
}  // namespace orn::simulation
