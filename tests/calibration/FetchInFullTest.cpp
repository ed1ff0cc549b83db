#include <tests/results/ServiceScript.h>
#include <ORNHearingTestSDK/engine/SessionCalibration.h>

#include "simulation/calibration/SampleCalibration.h"

namespace orn {
namespace {

using simulation::sampleReply;

/// A good reply without one of its records.
std::string incomplete(OutputPath path, std::size_t missing = 0) {
  auto reply = nlohmann::json::parse(sampleReply(path));
  reply["deviceVolumeIOS"].erase(missing);
  return reply.dump();
}

/// The answer to a new session's fetch, after how many requests, and whether that session can then be tested.
std::string fetch(ServiceScript& script, OutputPath path) {
  const auto before = script.requestCount();
  const auto session = ORNManualHearingTest::init();
  session->setTestHzs({"1000hz", "500hz"});
  std::string heard;
  bool isWithin = true;
  const std::string device = path == OutputPath::Audiometer ? "AA:BB:CC:DD:EE:FF" : kEarphoneModel;
  fetchCalibration(*session, path, device,
                   [&](const std::optional<Error>& error) { heard += (isWithin ? "within " : "") + told(error); });
  isWithin = false;
  script.run();
  return heard + ", asked " + std::to_string(script.requestCount() - before) +
         (isCalibrated(*session, path) ? ", calibrated" : "");
}

TEST(FetchInFull, AnswersOnceAndKeepsOnlyWhatIsEnoughForATest) {
  for (const OutputPath path : {OutputPath::Audiometer, OutputPath::Earphones}) {
    const OutputPath other = path == OutputPath::Audiometer ? OutputPath::Earphones : OutputPath::Audiometer;
    const std::pair<std::string, const char*> useless[] = {{R"({"rspCode":1})", "service, asked 1"},
                                                           {"[]", "json, asked 1"},
                                                           {R"({"rspCode":0})", "calibration 0, asked 1"},
                                                           {sampleReply(other), "calibration 0, asked 1"}};
    ServiceScript script;
    script.fails();
    EXPECT_EQ(fetch(script, path), "transport 7 gone, asked 1");
    for (const auto& [reply, heard] : useless) {
      script.answers(reply);
      for (int time = 0; time < 2; ++time) EXPECT_EQ(fetch(script, path), heard) << reply;
    }
    for (std::size_t missing = 0; missing < (path == OutputPath::Audiometer ? 3 : 2); ++missing) {
      script.answers(incomplete(path, missing));
      EXPECT_EQ(fetch(script, path), "calibration 0, asked 1") << missing;
      const auto session = ORNManualHearingTest::init();
      calibrate(*session, path, "device", incomplete(path, missing));
      EXPECT_FALSE(isCalibrated(*session, path)) << missing;
    }
    // Cached by the other operations, which accept it as it is.
    script.answers(incomplete(path));
    const auto session = ORNManualHearingTest::init();
    session->setKV50MAC("AA:BB:CC:DD:EE:FF", {});
    session->setEarPlugModel(kEarphoneModel, {});
    script.run();
    script.answers(sampleReply(path));
    EXPECT_EQ(fetch(script, path), "ok, asked 1, calibrated");
    script.fails();
    EXPECT_EQ(fetch(script, path), "ok, asked 0, calibrated") << "from the cache";
    EXPECT_FALSE(isCalibration(path, sampleReply(path), {"1000hz", "750hz"}));
    auto refused = nlohmann::json::parse(sampleReply(path));
    refused["rspCode"] = 1;
    EXPECT_FALSE(isCalibration(path, refused.dump(), {"1000hz"}));
  }
}

}  // namespace
}  // namespace orn
