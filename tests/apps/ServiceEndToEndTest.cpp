// The library's own operations against the reference service, over loopback: what each callback gets, and how often,
// and what of a dead one.

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

#include "hearing-service/HearingService.h"

namespace orn {
namespace {

using testing::ElementsAre;

/// A host application on a real loop and a real network.
class EndToEnd : public testing::Test {
 protected:
  EndToEnd() : machine_(std::make_shared<LinuxRunLoop>()) {
    Platform platform = machine_.platform();
    platform.urlSession = std::make_shared<LinuxURLSession>();
    Platform::setCurrent(platform);
    machine_.userDefaults->setValue(kServiceHostDefault, "127.0.0.1:" + std::to_string(service_.port()));
    ORNHearingTest::registerAppKey("KEY");
  }
  ~EndToEnd() override { Platform::clearCurrent(); }

  LinuxRunLoop& loop() { return static_cast<LinuxRunLoop&>(*machine_.runLoop); }

  /// Runs an operation and then the loop until its callback has come; what the callback said, once for each call.
  template <class Operation>
  std::vector<std::string> callbacksOf(Operation operation) {
    std::vector<std::string> said;
    const auto main = std::this_thread::get_id();
    bool isInside = true;
    operation([&](const std::optional<Error>& error) {
      EXPECT_EQ(std::this_thread::get_id(), main);
      said.push_back((error ? error->domain : "no error") + (isInside ? " inside" : ""));
      machine_.runLoop->performAfterDelay(std::chrono::milliseconds(5), [&] { loop().stop(); });
    });
    isInside = false;
    if (said.empty()) loop().run();
    return said;
  }

  std::vector<std::string> registers() {
    return callbacksOf([](auto done) {
      ORNHearingTest::setAppUserID("user1", "王", true, std::chrono::system_clock::now(), "13800000000", done);
    });
  }
  std::vector<std::string> submits() {
    return callbacksOf([](auto done) {
      ORNHearingTest::listenTestWithLeft({{"1000hz", "20"}}, {{"1000hz", "35"}}, "1",
                                         [done](std::nullptr_t, const std::optional<Error>& error) { done(error); });
    });
  }
  std::vector<std::string> posts() {
    return callbacksOf([](auto done) {
      ORNManualHearingTest::postListenTestWithLeft({}, {{"500hz", "15"}}, true, 1, 2, {}, {}, {}, {}, "1", done);
    });
  }
  std::vector<std::string> readsHistory() {
    return callbacksOf([this](auto done) {
      ORNHearingTest::getListenTestWithCompletion(
          [this, done](const std::optional<Error>& error, const nlohmann::json& tests) {
            history_ = tests;
            done(error);
          });
    });
  }
  std::vector<std::string> fetchesByAddress(const std::string& address) {
    session_ = ORNManualHearingTest::init();
    return callbacksOf([&](auto done) { session_->setKV50MAC(address, done); });
  }
  std::vector<std::string> fetchesByModel(const std::string& model) {
    session_ = ORNManualHearingTest::init();
    return callbacksOf([&](auto done) { session_->setEarPlugModel(model, done); });
  }

  service::HearingService service_;
  SimulatedPlatform machine_;
  std::shared_ptr<ORNManualHearingTest> session_;
  nlohmann::json history_;
};

TEST_F(EndToEnd, ProfileSubmissionAndHistory) {
  EXPECT_THAT(registers(), ElementsAre("no error"));
  EXPECT_THAT(submits(), ElementsAre("no error"));
  EXPECT_THAT(posts(), ElementsAre("no error"));
  EXPECT_THAT(readsHistory(), ElementsAre("no error"));
  ASSERT_EQ(history_.size(), 2U);
  EXPECT_EQ(history_[0]["left1000hz"], "20");
  EXPECT_EQ(history_[0]["right125hz"], "-1");
  EXPECT_EQ(history_[0]["base"], 0);
  EXPECT_EQ(history_[0]["correctName"], "Simulated1,1");
  EXPECT_EQ(history_[1]["right500hz"], "15");
  EXPECT_EQ(history_[1]["base"], 1);
}

TEST_F(EndToEnd, DeadServiceIsATransportErrorAndNothingIsLost) {
  registers();
  machine_.userDefaults->setValue(kServiceHostDefault, "127.0.0.1:1");
  for (const auto& said :
       {registers(), submits(), posts(), readsHistory(), fetchesByAddress("AA"), fetchesByModel("1")}) {
    EXPECT_THAT(said, ElementsAre("transport"));
  }
  EXPECT_EQ(machine_.userDefaults->value(kUserIDDefault), std::optional<DefaultsValue>("user1"));
}

}  // namespace
}  // namespace orn
