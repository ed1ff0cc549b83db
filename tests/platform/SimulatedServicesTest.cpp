#include <chrono>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace orn {
namespace {

using namespace std::chrono_literals;

TEST(SimulatedURLSession, RepliesByTheLastScriptThatFitsAfterItsDelay) {
  const auto loop = std::make_shared<SimulatedRunLoop>();
  SimulatedURLSession session(loop);
  session.script("/app", {"general ", {}});
  session.script("/app/score", {"score ", {}}, 250ms);
  std::string said;
  for (const char* url : {"http://host/app/score", "http://host/app/history"}) {
    session.dataTask({.url = url, .method = "Get", .headers = {}, .body = {}},
                     [&](const URLReply& got) { said += *got.body; });
  }
  for (const auto& [span, expected] :
       {std::pair(9ms, ""), {1ms, "general "}, {239ms, "general "}, {1ms, "general score "}}) {
    loop->runFor(span);
    EXPECT_EQ(said, expected);
  }
}

}  // namespace
}  // namespace orn
