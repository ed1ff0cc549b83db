#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/LevelCipher.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>

namespace {

using nlohmann::json;

const std::vector<std::string> kHzs{"125", "250", "500", "1000", "2000", "4000", "8000"};

void countBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(text.size()));
}

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

// The yardstick: what it takes only to parse the text.
void calibrationJsonAlone(benchmark::State& state) {
  const std::string text = calibrationReply();
  for (auto _ : state) benchmark::DoNotOptimize(json::parse(text));
  countBytes(state, text);
}

void calibrationReplyRead(benchmark::State& state) {
  const std::string text = calibrationReply();
  for (auto _ : state) benchmark::DoNotOptimize(orn::ORNDeviceCorrect::parse(text));
  countBytes(state, text);
}

void levelDeciphered(benchmark::State& state) {
  const std::string level = orn::encipheredLevel("-70.25");
  for (auto _ : state) benchmark::DoNotOptimize(orn::decipheredLevel(level));
}

/// A history with as many tests, each with every field that a service fills.
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

void historyRead(benchmark::State& state) {
  const std::string text = historyReply(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    const json reply = json::parse(text);
    std::vector<std::shared_ptr<orn::ORNListenTest>> tests;
    for (const json& one : reply.at("listenTests")) {
      tests.push_back(orn::ORNListenTest::modelObjectWithDictionary(one));
    }
    benchmark::DoNotOptimize(tests.data());
  }
  countBytes(state, text);
}

void historyJsonAlone(benchmark::State& state) {
  const std::string text = historyReply(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(json::parse(text));
  countBytes(state, text);
}

BENCHMARK(calibrationJsonAlone);
BENCHMARK(calibrationReplyRead);
BENCHMARK(levelDeciphered);
BENCHMARK(historyJsonAlone)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(historyRead)->Arg(10'000)->Unit(benchmark::kMillisecond);

}  // namespace
