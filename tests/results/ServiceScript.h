#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace orn {

/// A machine whose service gives scripted answers.
struct ServiceScript {
  ServiceScript();
  ~ServiceScript();
  ServiceScript(const ServiceScript&) = delete;
  ServiceScript& operator=(const ServiceScript&) = delete;

  /// What the service answers from now on.
  void answers(const std::string& body);
  void fails();

  /// Stores the application key and the user's id.
  void knowsUser(const std::string& appKey = "key", const std::string& userID = "user");

  /// Runs for a tenth of a second, ten times what the service needs.
  void run();

  std::size_t requestCount() const { return machine.urlSession->requests().size(); }

  SimulatedPlatform machine;
};

/// What a callback was told, such as "ok", "transport 7 gone", "json", "service" and, with a list, "ok [1,2]".
std::string told(const std::optional<Error>& error, const nlohmann::json& list = nullptr);

/// An operation that asks the service; `done` is told what its callback was told.
struct ServiceOperation {
  std::string name;
  std::function<void(std::function<void(const std::string&)> done)> start;
};

/// All operations, each with the same sample arguments.
std::vector<ServiceOperation> serviceOperations();
ServiceOperation serviceOperation(const std::string& name);

}  // namespace orn
