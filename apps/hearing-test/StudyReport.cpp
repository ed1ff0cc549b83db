#include "hearing-test/StudyReport.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "hearing-test/CommonOptions.h"

namespace orn {
namespace {

using simulation::ErrorStatistics;
using simulation::Population;
using simulation::Spread;
using simulation::StudyPlan;
using simulation::StudyStatistics;
using simulation::TestType;
using Json = nlohmann::ordered_json;

bool isUniform(const StudyPlan& plan) { return plan.population.thresholds == Population::Thresholds::Uniform; }

Json jsonOf(const ErrorStatistics& errors) {
  return {{"bias", errors.bias},
          {"meanAbsoluteError", errors.meanAbsolute},
          {"standardDeviation", errors.deviation},
          {"within5dB", errors.within5},
          {"within10dB", errors.within10}};
}

Json jsonOf(const Spread& spread) { return {{"mean", spread.mean}, {"p95", spread.p95}}; }

Json jsonOf(const StudyStatistics& one) {
  Json json = jsonOf(one.onScale);
  if (one.hz != 0) json["hz"] = one.hz;
  json["thresholds"] = one.thresholds;
  json["unlimited"] = jsonOf(one.plain);
  json["testRetest"] = {{"bias", one.retestBias}, {"standardDeviation", one.retestDeviation}};
  json["presentations"] = jsonOf(one.presentations);
  json["minutes"] = jsonOf(one.minutes);
  return json;
}

Json jsonOf(const StudyResult& result) {
  const StudyPlan& plan = result.plan;
  Json json{{"type", nameOf(plan.type)},
            {"path", nameOf(plan.path)},
            {"listeners", plan.listeners},
            {"seed", plan.seed},
            {"thresholds", isUniform(plan) ? "uniform" : "audiograms"},
            {"slope", plan.population.slope},
            {"guess", plan.population.guess},
            {"lapse", plan.population.lapse},
            {"frequencies", Json::array()}};
  if (isUniform(plan)) json["correlation"] = plan.population.correlation;
  for (const StudyStatistics& one : result.statistics) {
    if (one.hz != 0) {
      json["frequencies"].push_back(jsonOf(one));
    } else {
      json["overall"] = jsonOf(one);
    }
  }
  return json;
}

void printErrors(const ErrorStatistics& errors) {
  std::printf("%7.2f %7.2f %7.2f %7.1f%% %6.1f%%", errors.bias, errors.meanAbsolute, errors.deviation,
              errors.within5 * 100, errors.within10 * 100);
}

void printRow(const StudyStatistics& one) {
  if (one.hz != 0) {
    std::printf("%7d Hz", one.hz);
  } else {
    std::printf("   overall");
  }
  printErrors(one.onScale);
  std::printf(" %9.2f %9.1f %5.0f %8.2f %6.2f\n", one.retestDeviation, one.presentations.mean, one.presentations.p95,
              one.minutes.mean, one.minutes.p95);
}

}  // namespace

std::string jsonReport(const std::vector<StudyResult>& results) {
  Json json{{"studies", Json::array()}};
  for (const StudyResult& result : results) json["studies"].push_back(jsonOf(result));
  return json.dump(2);
}

void printReport(const StudyResult& result) {
  const StudyPlan& plan = result.plan;
  std::printf(
      "%s test, %s: %zu listeners, both ears, twice; thresholds: %s; slope %g per dB, %g %% guesses, %g %% lapses\n",
      plan.type == TestType::Standard ? "Standard" : "Automatic", nameOf(plan.path), plan.listeners,
      isUniform(plan) ? "uniform" : "audiograms", plan.population.slope, plan.population.guess * 100,
      plan.population.lapse * 100);
  std::printf("found minus true, in dB; a true threshold beyond the test's scale counts as the end of the scale\n");
  std::printf("             bias     MAE      SD  within5     10 retest SD     tones   p95  minutes    p95\n");
  for (const StudyStatistics& one : result.statistics) printRow(one);
  std::printf(" unlimited");
  printErrors(result.statistics.back().plain);
  std::printf("\nTones and minutes: of one frequency of one ear, and overall of a test of both ears\n\n");
}

}  // namespace orn
