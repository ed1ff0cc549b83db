// The replies of the service, read, beside the parsing of their JSON alone.

#include <memory>
#include <string>
#include <utility>
#include <vector>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>

#include "benchmarks/Comparison.h"

namespace {

using namespace orn::bench;
using nlohmann::json;

const std::vector<std::string> kHzs{"125", "250", "500", "1000", "2000", "4000", "8000"};

/// Five records with seven enciphered values each.
std::string calibrationReply() {
  json records = json::array();
  for (int i = 0; i < 5; ++i) {
    json record = {{"base", i % 2 == 0},         {"batch", 2},        {"correct_name", "iPhone10,3"},
                   {"ear", 1 + i % 2},           {"edition", "1.0"},  {"earplug_model", "1"},
                   {"mac", "AA:BB:CC:DD:EE:FF"}, {"id", 4711 + i},    {"machine", "KV50"},
                   {"system_volume", "1"},       {"earPath", nullptr}};
    for (const auto& hz : kHzs) record["s" + hz] = orn::encipheredLevel("-7" + std::to_string(i) + ".25");
    records.push_back(std::move(record));
  }
  return json{{"rspCode", 0}, {"rspDesc", "ok"}, {"deviceVolumeIOS", std::move(records)}}.dump();
}

/// A history of so many tests, each with every field that a service fills.
std::string historyReply(int count) {
  json tests = json::array();
  for (int i = 0; i < count; ++i) {
    json test = {{"id", "402881e65f" + std::to_string(i)},
                 {"correctName", "iPhone10,3"},
                 {"ordinaryUserID", "user"},
                 {"createDate", 1.7672256e12 + i},
                 {"leftResult_d", 25.5},
                 {"rightResul_d", 30.25},
                 {"leftScore", 75},
                 {"rightScore", 70},
                 {"score", 72},
                 {"diagnose", false},
                 {"calibration", true},
                 {"base", 0},
                 {"headset", "AA:BB:CC:DD:EE:FF"},
                 {"ordinaryEmail", nullptr},
                 {"personID", nullptr},
                 {"noise", nullptr}};
    for (const auto& hz : kHzs) test["left" + hz + "hz"] = test["right" + hz + "hz"] = std::to_string(15 + i % 16 * 5);
    tests.push_back(std::move(test));
  }
  return json{{"rspCode", 0}, {"listenTests", std::move(tests)}}.dump();
}

void readHistory(const std::string& text) {
  const json reply = json::parse(text);
  std::vector<std::shared_ptr<orn::ORNListenTest>> tests;
  for (const json& one : reply.at("listenTests")) {
    tests.push_back(orn::ORNListenTest::modelObjectWithDictionary(one));
  }
  keep(tests.data());
}

void parseAlone(const std::string& text) {
  const json reply = json::parse(text);
  keep(&reply);
}

}  // namespace

int main() {
  const std::string calibration = calibrationReply();
  compare(often("calibration reply", [&] { keep(orn::ORNDeviceCorrect::parse(calibration).get()); }),
          often("its JSON alone", [&] { parseAlone(calibration); }));
  const std::string history = historyReply(10'000);
  compare(often("history of 10000 tests", [&] { readHistory(history); }),
          often("its JSON alone", [&] { parseAlone(history); }), 9);
}
