#include <algorithm>
#include <chrono>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace orn {
namespace {

using namespace std::chrono_literals;

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
    std::string said;
    session.dataTask({.url = url, .method = "Get", .headers = {}, .body = {}},
                     [&](const URLReply& got) { said += got.error ? got.error->domain : *got.body; });
    loop->runFor(at - 1ms);
    EXPECT_EQ(said, "") << url;
    loop->runFor(std::min(at, 1ms));
    EXPECT_EQ(said, reply) << url;
  }
}

}  // namespace
}  // namespace orn
