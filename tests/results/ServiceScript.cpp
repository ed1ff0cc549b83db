#include "ServiceScript.h"

#include <chrono>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/TestHistory.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

namespace orn {

using nlohmann::json;
using Done = std::function<void(const std::string&)>;

ServiceScript::ServiceScript() {
  Platform::setCurrent(machine.platform());
  machine.userDefaults->setValue("SERVICEHOST", std::string("service.example:8080"));
  answers(R"({"rspCode":0})");
}

ServiceScript::~ServiceScript() { Platform::clearCurrent(); }

void ServiceScript::answers(const std::string& body) { machine.urlSession->script("", {body, {}}); }

void ServiceScript::fails() { machine.urlSession->script("", {{}, Error{"transport", 7, "gone"}}); }

void ServiceScript::knowsUser(const std::string& appKey, const std::string& userID) {
  ORNHearingTest::registerAppKey(appKey);
  machine.userDefaults->setValue("USERID", userID);
}

void ServiceScript::run() { machine.virtualTime->runFor(std::chrono::milliseconds(100)); }

std::string told(const std::optional<Error>& error, const json& list) {
  std::string text = "ok";
  const bool isBare = error && (error->domain == "json" || error->domain == kServiceDomain);
  if (error) text = isBare ? error->domain : error->domain + " " + std::to_string(error->code);
  if (error && error->message == "gone") text += " gone";
  return list.is_null() ? text : text + " " + list.dump();
}

ServiceOperations serviceOperations() {
  static const EarResult left{{"1000hz", "40"}}, right{{"1000hz", "35"}, {"2000hz", "30"}};
  static const auto birthday = std::chrono::system_clock::time_point(std::chrono::hours(12));
  static const std::string address = "AA:BB:CC:DD:EE:FF";
  using Failure = std::optional<Error>;
  const auto tells = [](const Done& done) {
    return [done](const Failure& error, const json& list = nullptr) { done(told(error, list)); };
  };
  // A session lives as long as something waits for its answer.
  const auto inSession = [](const auto& ask) {
    return [ask](const Done& done) {
      const auto session = ORNManualHearingTest::init();
      ask(*session, [done, session](const Failure& error, auto&&...) { done(told(error)); });
    };
  };
  return {
      {"getListenTest", [=](const Done& done) { ORNHearingTest::getListenTestWithCompletion(tells(done)); }},
      {"fetch history", [=](const Done& done) { TestHistory::fetch(tells(done)); }},
      {"listenTest",
       [](const Done& done) {
         ORNHearingTest::listenTestWithLeft(left, right, "model",
                                            [done](std::nullptr_t, const Failure& error) { done(told(error)); });
       }},
      {"submit", [=](const Done& done) { ResultSubmission::submit(left, right, "model", tells(done)); }},
      {"postListenTest",
       [=](const Done& done) {
         ORNManualHearingTest::postListenTestWithLeft(left, right, true, 1, 2, "noise", "another user", "start", "end",
                                                      "model", tells(done));
       }},
      {"setAppUserID",
       [=](const Done& done) { ORNHearingTest::setAppUserID("id", "name", true, birthday, "phone", tells(done)); }},
      {"registerUser",
       [=](const Done& done) { UserProfile::registerUser("id", "name", true, birthday, "phone", tells(done)); }},
      {"setKV50MAC", inSession([](auto& session, auto done) { session.setKV50MAC(address, done); })},
      {"getTestHistoryByMAC", inSession([](auto& session, auto done) { session.getTestHistoryByMAC(address, done); })},
      {"setEarPlugModel", inSession([](auto& session, auto done) { session.setEarPlugModel("1", done); })},
  };
}

}  // namespace orn
