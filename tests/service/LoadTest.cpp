#include <barrier>
#include <deque>
#include <thread>

#include "tests/service/ClientAndService.h"

namespace orn::service {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

constexpr int kClients = 64, kSubmissions = 20, kUsers = 16;

std::string userOf(int client) { return "user" + std::to_string(client % kUsers); }

/// Submits under numbers that count upwards, each once the one before it has been answered.
void submitInOrder(std::uint16_t port, int client) {
  for (int number = 0; number < kSubmissions; ++number) {
    const auto body = submission({{"correctName", std::to_string(client)}, {"headset", std::to_string(number)}});
    const Reply reply = ask(port, "/vrdnx/user/sdkJonDiagnose2/" + userOf(client) + "/k", body.dump());
    EXPECT_EQ(reply.json().value("rspCode", -1), 0);
  }
}

/// Every client of this user has all its submissions in the list, in their order, under rising dates.
void expectWhole(const std::vector<json>& tests) {
  std::map<std::string, int> next;
  double last = 0;
  for (const json& test : tests) {
    EXPECT_EQ(test["headset"], std::to_string(next[test["correctName"]]++));
    EXPECT_GT(test["createDate"], last);
    last = test["createDate"];
  }
  EXPECT_EQ(next.size(), std::size_t{kClients / kUsers});
  for (const auto& [client, count] : next) EXPECT_EQ(count, kSubmissions) << client;
}

TEST(ServiceLoad, EverySubmissionOf64ClientsAtOnceIsInTheHistoryInOrder) {
  HearingService service({.database = ":memory:", .now = [] { return std::chrono::system_clock::time_point(1s); }});
  std::barrier start(kClients);
  {
    std::vector<std::jthread> clients;
    for (int client = 0; client < kClients; ++client) {
      clients.emplace_back([&, client] {
        start.arrive_and_wait();
        submitInOrder(service.port(), client);
      });
    }
  }
  for (int user = 0; user < kUsers; ++user) {
    const Reply reply = ask(service.port(), kHistory, "sdkKey=k&sdkUseId=" + userOf(user) + "&");
    expectWhole(reply.json().at("listenTests"));
  }
}

TEST(ServiceLoad, ClientsBeyondTheLimitWaitForTheirTurn) {
  HearingService service;
  std::deque<Connection> idle;
  for (int i = 0; i < 256; ++i) idle.emplace_back(service.port()).send("Post /vrdnx");
  std::deque<Connection> waiting;
  for (int i = 0; i < 3; ++i) {
    waiting.emplace_back(service.port()).send(requestText("Post", kSubmit, submission().dump()));
  }
  idle.pop_front();
  for (Connection& client : waiting) EXPECT_EQ(parsedReply(client.receiveAll()).json().value("rspCode", -1), 0);
}

}  // namespace
}  // namespace orn::service
