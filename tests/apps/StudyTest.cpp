#include <gmock/gmock.h>
#include <signal.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "simulation/calibration/SampleCalibration.h"
#include "simulation/studies/StudyStatistics.h"
#include "simulation/studies/WorkerProcesses.h"

namespace orn::simulation {
namespace {

using testing::ThrowsMessage;

StudyPlan planFor(TestType type, OutputPath path, std::size_t listeners) {
  return {.type = type, .path = path, .calibrationReply = sampleReply(path), .population = {}, .listeners = listeners};
}

/// The result for a listener who hears every level from the threshold on. The audiometer's retest sounds 20 dB above
/// its label.
double lowestHeard(const StudyPlan& plan, const StudiedThreshold& one) {
  const bool isRetest = plan.type == TestType::Standard && one.hz == 1000;
  if (!isRetest) return std::clamp(one.threshold, 15.0, 90.0);
  return std::clamp(one.threshold - (plan.path == OutputPath::Audiometer ? 20 : 0), -5.0, 90.0);
}

TEST(Study, PerfectListenersOnTheGridGetTheLowestLevelTheyHear) {
  for (const auto type : {TestType::Automatic, TestType::Standard}) {
    for (const auto path : {OutputPath::Audiometer, OutputPath::Earphones}) {
      StudyPlan plan = planFor(type, path, 2);
      plan.population = {.isOnGrid = true, .slope = 0, .guess = 0, .lapse = 0, .slowest = plan.population.quickest};
      plan.population.reactionSpread = 0;
      for (std::size_t index = 0; index < plan.listeners; ++index) {
        const StudiedListener studied = studyListener(plan, index);
        EXPECT_EQ(studied.thresholds.size(), type == TestType::Standard ? 14U : 8U);
        for (const StudiedThreshold& one : studied.thresholds) {
          const double expected = lowestHeard(plan, one);
          EXPECT_THAT(one.found, testing::ElementsAre(expected, expected)) << one.hz << " Hz at " << one.threshold;
        }
      }
    }
  }
}

TEST(Study, StatisticsFollowTheirDefinitions) {
  const StudiedListener one{
      {{500, 0, {15, 20}, {4, 6}, {0.25, 0.5}}, {1000, 50, {40, 65}, {3, 3}, {1, 2}}}, {8, 9}, {2, 3}};
  const auto all = statisticsOf(planFor(TestType::Automatic, OutputPath::Earphones, 1), {one});
  ASSERT_EQ(all.size(), 3U);
  EXPECT_DOUBLE_EQ(all[0].onScale.bias, 2.5) << "a threshold below the scale counts as 15 dB";
  EXPECT_DOUBLE_EQ(all[0].plain.bias, 17.5);
  EXPECT_DOUBLE_EQ(all[0].presentations.mean, 5);
  EXPECT_DOUBLE_EQ(all[1].onScale.meanAbsolute, 12.5);
  EXPECT_DOUBLE_EQ(all[1].onScale.deviation, 12.5);
  EXPECT_DOUBLE_EQ(all[2].onScale.within5, 0.5);
  EXPECT_DOUBLE_EQ(all[2].onScale.within10, 0.75);
  EXPECT_DOUBLE_EQ(all[2].retestDeviation, 10);
  EXPECT_DOUBLE_EQ(all[2].presentations.p95, 9);
}

TEST(Population, IsUniformAndCorrelatedAsAsked) {
  for (const double correlation : {0.0, 0.8}) {
    double sum = 0, squares = 0, products = 0;
    for (std::uint64_t index = 0; index < 4000; ++index) {
      const auto left = listenerOf({.correlation = correlation}, 1, index).left;
      const double a = left.at(1000) - 40, b = left.at(2000) - 40;
      EXPECT_LE(std::abs(a), 45);
      sum += a;
      squares += a * a;
      products += a * b;
    }
    EXPECT_NEAR(sum / 4000, 0, 1.5);
    EXPECT_NEAR(std::sqrt(squares / 4000), 90 / std::sqrt(12), 0.6) << "of a uniform distribution";
    EXPECT_NEAR(products / squares, correlation, 0.05);
  }
}

TEST(WorkerProcesses, GiveEveryResultInItsPlaceOrTellWhatFailed) {
  const auto job = [](std::size_t index) { return std::string(index * 5000, static_cast<char>('a' + index % 26)); };
  for (const std::size_t workers : {0U, 1U, 3U, 100U}) {
    const auto results = inWorkerProcesses(40, workers, job);
    ASSERT_EQ(results.size(), 40U);
    for (std::size_t i = 0; i < results.size(); ++i) EXPECT_EQ(results[i], job(i));
  }
  const auto throwing = [&](std::size_t index) { return index == 5 ? throw std::runtime_error("five") : job(index); };
  EXPECT_THAT([&] { inWorkerProcesses(40, 3, throwing); }, ThrowsMessage<std::runtime_error>("five"));
  const auto dying = [&](std::size_t index) { return index == 5 && raise(SIGKILL) == 0 ? "" : job(index); };
  EXPECT_THAT([&] { inWorkerProcesses(40, 3, dying); },
              ThrowsMessage<std::runtime_error>("a worker process ended early"));
}

}  // namespace
}  // namespace orn::simulation
