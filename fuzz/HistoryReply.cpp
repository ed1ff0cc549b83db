// A history reply of any bytes is read as by the history screen, and goes through the archive.

#include <algorithm>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/results/HistoryScores.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>

#include "fuzz/Expect.h"
#include "fuzz/FuzzMachine.h"

namespace {

using namespace orn;
using nlohmann::json;

/// Each record is read by itself, so the first few of a list stand for all.
constexpr std::size_t kRecords = 3;

void readRecord(const json& stored) {
  const auto test = ORNListenTest::modelObjectWithDictionary(stored);
  const HistoryScores scores = scoresOf(*test);
  fuzz::expect(scores.left <= 100 && scores.right <= 100, "a score is out of 100");
  fuzz::expect(earResultOf(*test, true).size() == 7, "an ear has seven frequencies");
  test->description();
  json archive = json::object();
  test->encodeWithCoder(archive);
  const auto back = ORNListenTest::initWithCoder(archive);
  fuzz::expect(back->copyWithZone()->dictionaryRepresentation() == test->dictionaryRepresentation(),
               "an archive and a copy keep a record");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static fuzz::FuzzMachine fuzzed;
  fuzzed.service->answer.assign(reinterpret_cast<const char*>(bytes), size);
  int calls = 0;
  ORNHearingTest::getListenTestWithCompletion([&](const std::optional<Error>& error, const json& tests) {
    ++calls;
    fuzz::expect(!error || tests.is_null(), "there is an error or a list");
    if (error) return;
    if (!tests.is_array()) return readRecord(tests);
    for (std::size_t i = 0; i < std::min(tests.size(), kRecords); ++i) readRecord(tests[i]);
  });
  fuzzed.machine.virtualTime->runFor(std::chrono::seconds(0));
  fuzz::expect(calls == 1, "the callback comes once");
  return 0;
}
