#include <deque>
#include <thread>

#include "tests/service/ClientAndService.h"

namespace orn::service {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

TEST(ServiceLoad, EverySubmissionOf64ClientsAtOnceIsInTheHistoryInOrder) {
  constexpr int kClients = 64, kSubmissions = 20;
  HearingService service({.database = ":memory:", .now = [] { return std::chrono::system_clock::time_point(1s); }});
  const auto submitInOrder = [&](int client) {
    for (int number = 0; number < kSubmissions; ++number) {  // each once the one before it has been answered
      const auto body = submission({{"correctName", std::to_string(client)}, {"headset", std::to_string(number)}});
      EXPECT_EQ(ask(service.port(), kSubmit, body.dump()).json().value("rspCode", -1), 0);
    }
  };
  {
    std::vector<std::jthread> clients;
    for (int client = 0; client < kClients; ++client) clients.emplace_back(submitInOrder, client);
  }
  std::map<std::string, int> next;
  double last = 0;
  const json reply = ask(service.port(), kHistory, "sdkKey=k&sdkUseId=u&").json();
  EXPECT_EQ(reply.at("listenTests").size(), std::size_t{kClients * kSubmissions});
  for (const json& test : reply.at("listenTests")) {
    EXPECT_EQ(test["headset"], std::to_string(next[test["correctName"]]++));
    EXPECT_GT(test["createDate"], last);
    last = test["createDate"];
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
