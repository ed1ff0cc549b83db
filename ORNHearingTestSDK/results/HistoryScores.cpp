#include <ORNHearingTestSDK/results/HistoryScores.h>

#include <algorithm>
#include <string>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/results/HearingScore.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>

namespace orn {
namespace {

/// A threshold is usually a text, but the service may send a number.
std::string thresholdText(const nlohmann::json& value) {
  if (value.is_string()) return value.get<std::string>();
  return value.is_number() ? value.dump() : "-1";
}

}  // namespace

EarResult earResultOf(const ORNListenTest& test, bool isLeft) {
  return {{"125hz", thresholdText(isLeft ? test.left125hz() : test.right125hz())},
          {"250hz", thresholdText(isLeft ? test.left250hz() : test.right250hz())},
          {"500hz", thresholdText(isLeft ? test.left500hz() : test.right500hz())},
          {"1000hz", thresholdText(isLeft ? test.left1000hz() : test.right1000hz())},
          {"2000hz", thresholdText(isLeft ? test.left2000hz() : test.right2000hz())},
          {"4000hz", thresholdText(isLeft ? test.left4000hz() : test.right4000hz())},
          {"8000hz", thresholdText(isLeft ? test.left8000hz() : test.right8000hz())}};
}

HistoryScores scoresOf(const ORNListenTest& test) {
  const auto lossOf = [&](bool isLeft) {
    return std::max<std::int64_t>(HearingScore::computeEarTestResult(earResultOf(test, isLeft)), 0);
  };
  const std::int64_t right = lossOf(false), left = lossOf(true);
  return {100 - right, 100 - left, 100 - ((right + left) >> 1)};
}

}  // namespace orn
