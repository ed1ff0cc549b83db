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
    Reply reply = ask(service_->port(), kCalibration, "correct_name=c&mac=m&appkey=k&");
    service_->misbehave({});
    return reply;
  }

  Reply good() { return ask(service_->port(), kCalibration, "correct_name=c&mac=m&appkey=k&"); }
};

TEST_F(Misbehaving, Status500HasTheGoodBody) {
  const Reply reply = replyUnder("status500");
  EXPECT_EQ(reply.status, 500);
  EXPECT_EQ(reply.body, good().body);
}

TEST_F(Misbehaving, NoBody) {
  const Reply reply = replyUnder("nobody");
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.announced, 0U);
  EXPECT_EQ(reply.body, "");
}

TEST_F(Misbehaving, GarbageIsNoJson) {
  const Reply reply = replyUnder("garbage");
  EXPECT_EQ(reply.status, 200);
  EXPECT_FALSE(reply.body.empty());
  EXPECT_TRUE(reply.json().is_discarded());
}

TEST_F(Misbehaving, HalfAnnouncesTheWhole) {
  const Reply reply = replyUnder("half");
  const std::string whole = good().body;
  EXPECT_EQ(reply.announced, whole.size());
  EXPECT_EQ(reply.body, whole.substr(0, whole.size() / 2));
}

TEST_F(Misbehaving, HugeIsTwentyMebibytesOfJson) {
  const Reply reply = replyUnder("huge");
  EXPECT_EQ(reply.body.size(), std::size_t{20} << 20);
  EXPECT_EQ(reply.json(), good().json());
}

TEST_F(Misbehaving, RefusalStoresNothing) {
  service_->misbehave({Misbehaviour::Kind::Refuse, {}});
  EXPECT_EQ(answer(kSubmit, submission().dump()).at("rspCode"), 1);
  service_->misbehave({});
  EXPECT_TRUE(history().empty());
}

TEST_F(Misbehaving, DelayedReplyIsGoodAndNotEarly) {
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(replyUnder("delay=50").body, good().body);
  EXPECT_GE(std::chrono::steady_clock::now() - before, 50ms);
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

TEST(Misbehaviours, OtherNamesAreNone) {
  for (const char* name : {"", "none", "Half", "delay", "delay=", "delay=-1", "delay=1s", "delay=600001", "half "}) {
    EXPECT_FALSE(misbehaviourNamed(name)) << name;
  }
}

}  // namespace
}  // namespace orn::service
