#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include <gmock/gmock.h>
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

/// All operations that ask the service, each with the same sample arguments; `done` is told what its callback was told.
using ServiceOperations = std::map<std::string, std::function<void(std::function<void(const std::string&)> done)>>;
ServiceOperations serviceOperations();

}  // namespace orn
