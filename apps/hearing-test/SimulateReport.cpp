#include "hearing-test/SimulateReport.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {
namespace {

using simulation::Channel;
using simulation::Presentation;
using simulation::TestOutcome;
using simulation::TestPlan;
using Json = nlohmann::ordered_json;

const char* channelName(Channel channel) {
  switch (channel) {
    case Channel::Left:
      return "left";
    case Channel::Right:
      return "right";
    default:
      return "both";
  }
}

Json jsonOf(const EarResult& result) {
  Json json = Json::object();
  for (const auto& [hz, db] : result) json[hz] = db;
  return json;
}

Json jsonOf(const Presentation& one) {
  return {{"at", one.at},
          {"ear", one.isLeft ? "left" : "right"},
          {"hz", one.hz},
          {"db", one.db},
          {"volume", one.volume},
          {"measured", one.measured ? Json(one.measured->level) : Json()},
          {"channel", one.measured ? Json(channelName(one.measured->channel)) : Json()},
          {"heard", one.heard}};
}

void printEar(const TestPlan& plan, bool isLeft, const EarResult& found, std::int64_t loss,
              const std::string& verdict) {
  const auto& ear = isLeft ? plan.listener.left : plan.listener.right;
  std::printf("\n%s ear       found   true\n", isLeft ? "Left " : "Right");
  for (const auto& [hz, db] : found) {
    const auto known = ear.find(intValue(hz));
    const double threshold = known == ear.end() ? plan.listener.thresholdElsewhere : known->second;
    std::printf("  %5d Hz   %4s dB   %4g dB\n", intValue(hz), db.c_str(), threshold);
  }
  std::printf("  loss %lld dB: %s\n", static_cast<long long>(loss), verdict.c_str());
}

}  // namespace

std::string jsonReport(const TestOutcome& outcome) {
  Json json;
  json["left"] = jsonOf(outcome.left);
  json["right"] = jsonOf(outcome.right);
  json["loss"] = {{"left", outcome.leftLoss}, {"right", outcome.rightLoss}};
  json["verdict"] = {{"left", outcome.leftVerdict}, {"right", outcome.rightVerdict}};
  json["presentations"] = Json::array();
  for (const Presentation& one : outcome.presentations) json["presentations"].push_back(jsonOf(one));
  json["simulatedSeconds"] = outcome.simulatedSeconds;
  json["elapsedSeconds"] = outcome.elapsedSeconds;
  return json.dump(2);
}

void printResult(const TestOutcome& outcome) {
  for (const bool isLeft : {false, true}) {
    std::printf("\n%s ear\n", isLeft ? "Left" : "Right");
    for (const auto& [hz, db] : isLeft ? outcome.left : outcome.right) {
      std::printf("  %5d Hz   %4s dB\n", intValue(hz), db.c_str());
    }
    std::printf("  loss %lld dB: %s\n", static_cast<long long>(isLeft ? outcome.leftLoss : outcome.rightLoss),
                (isLeft ? outcome.leftVerdict : outcome.rightVerdict).c_str());
  }
}

void printReport(const TestPlan& plan, const TestOutcome& outcome) {
  printEar(plan, false, outcome.right, outcome.rightLoss, outcome.rightVerdict);
  printEar(plan, true, outcome.left, outcome.leftLoss, outcome.leftVerdict);
  std::printf("\n%zu tones in %.0f s of simulated time, run in %.1f ms (%.0f times real time)\n",
              outcome.presentations.size(), outcome.simulatedSeconds, outcome.elapsedSeconds * 1000,
              outcome.simulatedSeconds / outcome.elapsedSeconds);
}

}  // namespace orn
