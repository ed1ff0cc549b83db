#include <future>
#include <gmock/gmock.h>

#include "tests/service/ClientAndService.h"

namespace orn::service {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

struct Misbehaving : ServiceTest {
  Reply replyUnder(std::string_view name) {
    service_->misbehave(misbehaviourNamed(name).value());
    return ask(service_->port(), kCalibration, "correct_name=c&mac=m&appkey=k&");
  }
};

TEST_F(Misbehaving, EachNameHasItsReply) {
  const std::string good = replyUnder("delay=0").body, half = good.substr(0, good.size() / 2);
  const std::tuple<const char*, int, std::size_t, std::string> table[] = {
      {"status500", 500, good.size(), good}, {"nobody", 200, 0, ""}, {"half", 200, good.size(), half}};
  for (const auto& [name, status, announced, body] : table) {
    const Reply reply = replyUnder(name);
    EXPECT_TRUE(reply.status == status && reply.announced == announced && reply.body == body) << name;
  }
  const Reply garbage = replyUnder("garbage"), huge = replyUnder("huge");
  EXPECT_TRUE(!garbage.body.empty() && garbage.json().is_discarded());
  EXPECT_TRUE(huge.body.size() == std::size_t{20} << 20 && huge.json() == json::parse(good));
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(replyUnder("delay=50").body, good);
  EXPECT_GE(std::chrono::steady_clock::now() - before, 50ms);
  service_->misbehave({Misbehaviour::Kind::Refuse, {}});
  EXPECT_EQ(answer(kSubmit, submission().dump()).at("rspCode"), 1);
  service_->misbehave({});
  EXPECT_TRUE(history().empty());
  for (const char* name : {"", "none", "Half", "delay", "delay=", "delay=-1", "delay=1s", "delay=600001", "half "}) {
    EXPECT_FALSE(misbehaviourNamed(name)) << name;
  }
}

TEST_F(Misbehaving, EndOfTheServiceLetsDelayedRepliesGo) {
  std::promise<void> arrived;
  start({.misbehaviour = misbehaviourNamed("delay=600000").value(), .now = [&arrived] {
           arrived.set_value();
           return std::chrono::system_clock::now();
         }});
  Connection client(service_->port());
  client.send(requestText("Post", kSubmit, submission().dump()));
  arrived.get_future().wait();
  service_.reset();
  client.receiveAll();
  EXPECT_EQ(rows("SELECT 1 FROM tests").size(), 1U);
}

}  // namespace
}  // namespace orn::service
