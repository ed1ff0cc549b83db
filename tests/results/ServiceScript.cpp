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
  static const auto birthday = std::chrono::system_clock::time_point(std::chrono::hours(12));
  static const std::string address = "AA:BB:CC:DD:EE:FF";
  using Failure = std::optional<Error>;
  const auto tells = [](const Done& done) { return [done](const Failure& error) { done(told(error)); }; };
  const auto lists = [](const Done& done) {
    return [done](const Failure& error, const json& list) { done(told(error, list)); };
  };
  // A session lives as long as something waits for its answer.
  const auto session = [](const Done& done) {
    const auto made = ORNManualHearingTest::init();
    return std::pair(made.get(), [done, made](const Failure& error, auto&&...) { done(told(error)); });
  };
  return {
      {"getListenTest", [=](const Done& done) { ORNHearingTest::getListenTestWithCompletion(lists(done)); }},
      {"fetch history", [=](const Done& done) { TestHistory::fetch(lists(done)); }},
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
      {"setKV50MAC",
       [=](const Done& done) {
         const auto [made, tell] = session(done);
         made->setKV50MAC(address, tell);
       }},
      {"getTestHistoryByMAC",
       [=](const Done& done) {
         const auto [made, tell] = session(done);
         made->getTestHistoryByMAC(address, tell);
       }},
      {"setEarPlugModel",
       [=](const Done& done) {
         const auto [made, tell] = session(done);
         made->setEarPlugModel("1", tell);
       }},
  };
}

ServiceOperation serviceOperation(const std::string& name) {
  const auto all = serviceOperations();
  return *std::find_if(all.begin(), all.end(), [&](const ServiceOperation& one) { return one.name == name; });
}

}  // namespace orn
