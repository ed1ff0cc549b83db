#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>

#include "hearing-service/HearingService.h"

namespace orn::service {

constexpr auto kCalibration = "/vrdnx/user/findSdkDeviceValue";
constexpr auto kHistory = "/vrdnx/user/acquireListenTest";
constexpr auto kRegister = "/vrdnx/user/sdkRegister";
constexpr auto kSubmit = "/vrdnx/user/sdkJonDiagnose2/u/k";

/// A TCP connection to 127.0.0.1.
class Connection {
 public:
  explicit Connection(std::uint16_t port);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void send(std::string_view bytes);
  /// Everything up to the connection's end.
  std::string receiveAll();

 private:
  int socket_;
};

struct Reply {
  int status = 0;
  std::size_t announced = 0;  ///< Content-Length
  std::string body;
  nlohmann::json json() const { return nlohmann::json::parse(body, nullptr, false); }
};

std::string requestText(std::string_view method, std::string_view target, std::string_view body);
Reply parsedReply(const std::string& text);

/// Sends one request on a connection of its own.
Reply ask(std::uint16_t port, std::string_view target, std::string_view body, std::string_view method = "Post");

/// A good body of a submission: thresholds of 20 dB but for those given, as any other field is.
nlohmann::json submission(const std::map<std::string, std::string>& fields = {});

nlohmann::json profile(const std::map<std::string, std::string>& fields = {});

/// A service on a database file that is gone after the test.
class ServiceTest : public testing::Test {
 protected:
  ServiceTest() { start(); }

  /// Starts the service on the database file, after ending one that runs.
  void start(ServiceOptions options = {});

  nlohmann::json answer(std::string_view target, std::string_view body);
  std::vector<nlohmann::json> history(std::string_view userId = "u", std::string_view key = "k");
  /// Rows of the database file as lists of texts, read by a connection of the test's own.
  std::vector<std::vector<std::string>> rows(const std::string& sql);

  contract::TemporaryFolder folder_;
  std::optional<HearingService> service_;
};

}  // namespace orn::service
