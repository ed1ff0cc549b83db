#include "simulation/runs/SimulatedTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>

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

TEST_P(BothPaths, ScaleEndsAreReported) {
  for (const auto& [threshold, found] :
       std::map<double, std::string>{{-30, "15"}, {15, "15"}, {89, "90"}, {120, "90"}}) {
    TestPlan plan = planFor(TestType::Automatic, GetParam());
    plan.frequencies = {"125hz", "250hz", "8000hz"};
    plan.listener.thresholdElsewhere = threshold;
    const TestOutcome outcome = runSimulatedTest(plan);
    EXPECT_THAT(outcome.left, ElementsAre(Pair("125hz", found), Pair("250hz", found), Pair("8000hz", found)))
        << threshold;
    EXPECT_EQ(outcome.left, outcome.right);
  }
}

TEST_P(BothPaths, StandardRetestGoesDownToItsOwnEnd) {
  TestPlan plan = planFor(TestType::Standard, GetParam());
  plan.listener.left = plan.listener.right = {};
  plan.listener.thresholdElsewhere = -30;
  const TestOutcome outcome = runSimulatedTest(plan);
  EXPECT_EQ(outcome.left.at("1000hz"), "-5");
  EXPECT_EQ(outcome.right.at("1000hz"), "-5");
  EXPECT_EQ(outcome.right.at("2000hz"), "15");
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

TEST(SimulatedTest, StandardRetestOfTheRightEarSoundsOnTheLeft) {
  const TestOutcome outcome = runSimulatedTest(planFor(TestType::Standard, OutputPath::Earphones));
  int onTheLeft = 0;
  for (const Presentation& one : outcome.presentations) {
    if (!one.isLeft && one.measured && one.measured->channel == Channel::Left) {
      EXPECT_EQ(one.hz, "1000hz");
      ++onTheLeft;
    }
  }
  EXPECT_GE(onTheLeft, 3);
}

TEST(SimulatedTest, SameSeedIsTheSameListener) {
  TestPlan plan = planFor(TestType::Automatic, OutputPath::Audiometer);
  plan.listener.slope = 0.3;
  plan.listener.guess = 0.1;
  plan.listener.lapse = 0.1;
  std::map<std::string, int> levels;
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    plan.listener.seed = seed;
    const TestOutcome outcome = runSimulatedTest(plan);
    EXPECT_EQ(outcome.right, runSimulatedTest(plan).right);
    ++levels[outcome.right.at("1000hz")];
  }
  EXPECT_GT(levels.size(), 1U) << "chance plays no part";
}

TEST(SimulatedTest, KeepsWhatWasPlayed) {
  TestPlan plan = planFor(TestType::Automatic, OutputPath::Earphones);
  plan.frequencies = {"1000hz"};
  plan.keepsSamples = true;
  const TestOutcome outcome = runSimulatedTest(plan);
  EXPECT_EQ(outcome.samples.size(), 2 * static_cast<std::size_t>(std::llround(outcome.simulatedSeconds * 48000)));
  const auto firstTone =
      std::find_if(outcome.samples.begin(), outcome.samples.end(), [](auto one) { return one != 0; });
  // The first entry of a sine is 0, so the tone shows one frame after its start.
  EXPECT_EQ((firstTone - outcome.samples.begin()) / 2, 4 * 48000 + 1);
}

TEST(SimulatedTest, MissingEarphoneValueEndsTheTestWithoutALevel) {
  TestPlan plan = planFor(TestType::Automatic, OutputPath::Earphones);
  plan.calibrationReply = R"({"rspCode":0,"deviceVolumeIOS":[{"ear":1,"s1000":"x"},{"ear":2}]})";
  const TestOutcome outcome = runSimulatedTest(plan);
  EXPECT_FALSE(outcome.isComplete);
  EXPECT_THAT(outcome.failure, HasSubstr("right ear"));
  EXPECT_TRUE(outcome.presentations.empty());
}

TEST(SampleCalibration, ValuesAreWhatTheSampleStandsFor) {
  const auto audiometer = audiometerRecords(*ORNDeviceCorrect::parse(sampleAudiometerReply()));
  ASSERT_TRUE(audiometer.ab && audiometer.aabb && audiometer.xxyy);
  EXPECT_EQ(audiometer.ab->s1000(), "-50.0");
  EXPECT_EQ(audiometer.aabb->s1000(), "4.9");
  EXPECT_EQ(audiometer.xxyy->s1000(), "4.2");
  const auto earphones = earphoneRecords(*ORNDeviceCorrect::parse(sampleEarphonesReply()));
  ASSERT_TRUE(earphones.left && earphones.right);
  EXPECT_EQ(earphones.left->s125(), "-49.6");
  EXPECT_EQ(earphones.right->s8000(), "-49.6");
}

}  // namespace
}  // namespace orn::simulation
