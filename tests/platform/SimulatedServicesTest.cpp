#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace orn {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SimulatedURLSession, RepliesByScriptAfterItsDelay) {
  const auto loop = std::make_shared<SimulatedRunLoop>();
  SimulatedURLSession session(loop);
  session.script("/app", {"general", {}});
  session.script("/app/score", {"score", {}}, 250ms);
  session.script("/app/late", {"late", {}}, 10001ms);
  session.script("/app/broken", {{}, Error{"json", 5, "broken"}});
  const struct {
    const char* url;
    std::chrono::milliseconds at;
    const char* reply;
  } table[] = {{"http://host/app/history", 10ms, "general"},
               {"http://host/app/score", 250ms, "score"},
               {"http://host/app/late", 10000ms, "transport"},
               {"http://host/app/broken", 10ms, "json"},
               {"http://host/other", 0ms, "transport"}};
  for (const auto& [url, at, reply] : table) {
    std::vector<std::string> replies;
    const auto asked = loop->now();
    std::chrono::nanoseconds answered{};
    session.dataTask({.url = url, .method = "Get", .headers = {}, .body = {}}, [&](const URLReply& got) {
      EXPECT_NE(got.body.has_value(), got.error.has_value());
      replies.push_back(got.error ? got.error->domain : *got.body);
      answered = loop->now() - asked;
    });
    EXPECT_THAT(replies, IsEmpty()) << url;  // never from within the call
    loop->runFor(1min);
    EXPECT_THAT(replies, ElementsAre(reply)) << url;
    EXPECT_EQ(answered, at) << url;
  }
  EXPECT_EQ(session.requests().size(), 5U);
  EXPECT_EQ(session.requests().back().url, "http://host/other");
}

}  // namespace
}  // namespace orn
