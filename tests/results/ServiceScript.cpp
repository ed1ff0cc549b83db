#include "ServiceScript.h"

#include <algorithm>
#include <chrono>
#include <memory>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/results/ResultSubmission.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/TestHistory.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

namespace orn {

using nlohmann::json;
using std::chrono::system_clock;
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

std::vector<ServiceOperation> serviceOperations() {
  static const EarResult left{{"1000hz", "40"}}, right{{"1000hz", "35"}, {"2000hz", "30"}};
  return {
      {"getListenTest",
       [](const Done& done) {
         ORNHearingTest::getListenTestWithCompletion(
             [done](const std::optional<Error>& error, const json& list) { done(told(error, list)); });
       }},
      {"listenTest",
       [](const Done& done) {
         ORNHearingTest::listenTestWithLeft(
             left, right, "model", [done](std::nullptr_t, const std::optional<Error>& error) { done(told(error)); });
       }},
      {"submit",
       [](const Done& done) {
         ResultSubmission::submit(left, right, "model",
                                  [done](const std::optional<Error>& error) { done(told(error)); });
       }},
      {"postListenTest",
       [](const Done& done) {
         ORNManualHearingTest::postListenTestWithLeft(left, right, true, 1, 2, "noise", "another user", "start", "end",
                                                      "model",
                                                      [done](const std::optional<Error>& error) { done(told(error)); });
       }},
      {"setAppUserID",
       [](const Done& done) {
         ORNHearingTest::setAppUserID("id", "name", true, system_clock::time_point(std::chrono::hours(12)), "phone",
                                      [done](const std::optional<Error>& error) { done(told(error)); });
       }},
      {"fetch history",
       [](const Done& done) {
         TestHistory::fetch([done](const std::optional<Error>& error, const json& list) { done(told(error, list)); });
       }},
      {"registerUser",
       [](const Done& done) {
         UserProfile::registerUser("id", "name", true, system_clock::time_point(std::chrono::hours(12)), "phone",
                                   [done](const std::optional<Error>& error) { done(told(error)); });
       }},
      {"setKV50MAC",
       [](const Done& done) {
         const auto session = ORNManualHearingTest::init();
         session->setKV50MAC("AA:BB:CC:DD:EE:FF",
                             [done, session](const std::optional<Error>& error) { done(told(error)); });
       }},
      {"getTestHistoryByMAC",
       [](const Done& done) {
         const auto session = ORNManualHearingTest::init();
         session->getTestHistoryByMAC("AA:BB:CC:DD:EE:FF", [done, session](const std::optional<Error>& error,
                                                                           std::nullptr_t) { done(told(error)); });
       }},
      {"setEarPlugModel",
       [](const Done& done) {
         const auto session = ORNManualHearingTest::init();
         session->setEarPlugModel("1", [done, session](const std::optional<Error>& error) { done(told(error)); });
       }},
  };
}

ServiceOperation serviceOperation(const std::string& name) {
  const auto all = serviceOperations();
  return *std::find_if(all.begin(), all.end(), [&](const ServiceOperation& one) { return one.name == name; });
}

}  // namespace orn
