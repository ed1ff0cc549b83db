#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/URLSession.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn::fuzz {

/// A service that gives the same answer to everything, at once.
class OneAnswer final : public URLSession {
 public:
  void dataTask(URLRequest /*request*/, CompletionHandler completionHandler) override {
    completionHandler({answer, std::nullopt});
  }

  std::string answer = R"({"rspCode":0})";
};

/// A simulated machine with that service and a registered user, put in force.
struct FuzzMachine {
  FuzzMachine() {
    for (const char* key : {kAppKeyDefault, kUserIDDefault, kServiceHostDefault}) {
      machine.userDefaults->setValue(key, std::string("given"));
    }
    Platform platform = machine.platform();
    platform.urlSession = service;
    Platform::setCurrent(std::move(platform));
  }
  ~FuzzMachine() { Platform::clearCurrent(); }
  FuzzMachine(const FuzzMachine&) = delete;
  FuzzMachine& operator=(const FuzzMachine&) = delete;

  SimulatedPlatform machine;
  std::shared_ptr<OneAnswer> service = std::make_shared<OneAnswer>();
};

}  // namespace orn::fuzz
