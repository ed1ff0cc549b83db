#include <barrier>
#include <deque>
#include <thread>

#include "tests/service/ClientAndService.h"

namespace orn::service {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

TEST(ServiceLoad, EverySubmissionOf64ClientsAtOnceIsInTheHistoryInOrder) {
  constexpr int kClients = 64, kSubmissions = 20, kUsers = 16;
  HearingService service({.database = ":memory:", .now = [] { return std::chrono::system_clock::time_point(1s); }});
  std::barrier start(kClients);
  const auto submitInOrder = [&](int client) {
    start.arrive_and_wait();
    for (int number = 0; number < kSubmissions; ++number) {  // each once the one before it has been answered
      const auto body = submission({{"correctName", std::to_string(client)}, {"headset", std::to_string(number)}});
      const auto target = "/vrdnx/user/sdkJonDiagnose2/" + std::to_string(client % kUsers) + "/k";
      EXPECT_EQ(ask(service.port(), target, body.dump()).json().value("rspCode", -1), 0);
    }
  };
  {
    std::vector<std::jthread> clients;
    for (int client = 0; client < kClients; ++client) clients.emplace_back(submitInOrder, client);
  }
  for (int user = 0; user < kUsers; ++user) {
    const Reply reply = ask(service.port(), kHistory, "sdkKey=k&sdkUseId=" + std::to_string(user) + "&");
    std::map<std::string, int> next;
    double last = 0;
    const json tests = reply.json().at("listenTests");
    for (const json& test : tests) {
      EXPECT_EQ(test["headset"], std::to_string(next[test["correctName"]]++));
      EXPECT_GT(test["createDate"], last);
      last = test["createDate"];
    }
    EXPECT_EQ(next.size(), std::size_t{kClients / kUsers});
    for (const auto& [client, count] : next) EXPECT_EQ(count, kSubmissions) << client;
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
