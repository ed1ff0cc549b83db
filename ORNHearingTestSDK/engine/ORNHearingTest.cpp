#include <ORNHearingTestSDK/engine/ORNHearingTest.h>

#include <utility>

#include <ORNHearingTestSDK/audio/AudioRoute.h>
#include <ORNHearingTestSDK/engine/ORNAutoHearingTest.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/engine/ORNStandardHearingTest.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/results/AppRegistration.h>
#include <ORNHearingTestSDK/results/HearingScore.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/TestHistory.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

namespace orn {

ORNHearingTest::ORNHearingTest() = default;
ORNHearingTest::~ORNHearingTest() = default;

std::shared_ptr<ORNHearingTest> ORNHearingTest::initWithTestType(std::int32_t testType) {
  return ORNManualHearingTest::initWithTestType(testType);
}

std::shared_ptr<ORNManualHearingTest> ORNManualHearingTest::initWithTestType(std::int32_t testType) {
  switch (testType) {
    case 2:
      return ORNStandardHearingTest::init();
    case 1:
      return ORNManualHearingTest::init();
    default:
      return ORNAutoHearingTest::init();
  }
}

ORNManualHearingTest* ORNHearingTest::manualTest() { return nullptr; }

void ORNHearingTest::setupNotifications() {
  observer_ = std::make_shared<AudioSessionObserver>();
  observer_->routeChange = [this](std::int32_t reason) { handleRouteChangeNotification(reason); };
  observer_->interruption = [this](std::int32_t type) { handleInterruptionNotification(type); };
  Platform::current().audioSession->addObserver(observer_);
}

void ORNHearingTest::handleInterruptionNotification(std::int32_t type) {
  if (type == kAudioSessionInterruptionTypeEnded) config();
}

void ORNHearingTest::handleRouteChangeNotification(std::int32_t /*reason*/) {}

void ORNHearingTest::setKV50MAC(const std::string& /*KV50MAC*/, CompletionHandler /*completionHandler*/) {}
void ORNHearingTest::setNosiseValue(std::optional<double> /*nosiseValue*/) {}
void ORNHearingTest::setLogEnable(bool /*enabled*/) {}
float ORNHearingTest::getTestProgress() const { return 0; }
void ORNHearingTest::setTestHzs(std::vector<std::string> /*hzs*/) {}
void ORNHearingTest::startTest(bool /*isLeft*/) {}
void ORNHearingTest::pauseTest() {}
void ORNHearingTest::continueTest() {}
void ORNHearingTest::endTest() {}
bool ORNHearingTest::isTestLeft() const { return true; }
void ORNHearingTest::listened() {}
std::optional<EarResult> ORNHearingTest::getTestResult(bool /*isLeft*/) const { return std::nullopt; }
void ORNHearingTest::playAtHz(const std::string& /*hz*/, const std::string& /*db*/) {}

void ORNHearingTest::load() { AudioRoute::load(); }
void ORNHearingTest::config() { AudioRoute::config(); }
void ORNHearingTest::configAudioSession() { AudioRoute::configAudioSession(); }
void ORNHearingTest::configAudioSessionToPlayAndRecord() { AudioRoute::configAudioSessionToPlayAndRecord(); }
bool ORNHearingTest::hasHeadset() { return AudioRoute::hasHeadset(); }
std::optional<std::string> ORNHearingTest::getKV50Mac() { return AudioRoute::getKV50Mac(); }
std::string ORNHearingTest::platform() { return AudioRoute::platform(); }

void ORNHearingTest::registerAppKey(const std::string& appKey) { orn::registerAppKey(appKey); }
void ORNHearingTest::setHttpHeader(URLRequest& request) { orn::setHttpHeader(request); }

void ORNHearingTest::setAppUserID(std::optional<std::string> appUserID, std::optional<std::string> username,
                                  bool isWomen, std::optional<std::chrono::system_clock::time_point> birthday,
                                  std::optional<std::string> phone, CompletionHandler completionHandler) {
  UserProfile::setAppUserID(std::move(appUserID), std::move(username), isWomen, birthday, std::move(phone),
                            std::move(completionHandler));
}

void ORNHearingTest::listenTestWithLeft(const EarResult& left, const EarResult& right,
                                        const std::optional<std::string>& earPlugModel,
                                        ResultSubmission::Completion completion) {
  ResultSubmission::listenTestWithLeft(left, right, earPlugModel, std::move(completion));
}

void ORNHearingTest::getListenTestWithCompletion(TestHistory::Completion completion) {
  TestHistory::getListenTestWithCompletion(std::move(completion));
}

std::int64_t ORNHearingTest::computeEarTestResult(const EarResult& earResult) {
  return HearingScore::computeEarTestResult(earResult);
}

std::string ORNHearingTest::computeResultString(std::int64_t loss) { return HearingScore::computeResultString(loss); }

}  // namespace orn
