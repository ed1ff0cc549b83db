#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>

namespace orn {
namespace {

TEST(LinuxRunLoop, StopEndsRunAfterTheCallThatIsGoingOn) {
  LinuxRunLoop loop;
  std::string said;
  loop.dispatchAsync([&] {
    said += "a";
    loop.stop();
  });
  loop.dispatchAsync([&] {
    said += "b";
    loop.stop();
  });
  loop.run();
  EXPECT_EQ(said, "a");
  loop.run();
  EXPECT_EQ(said, "ab");
  loop.stop();
  loop.dispatchAsync([&] { said += "c"; });
  loop.run();
  EXPECT_EQ(said, "ab");
}

}  // namespace
}  // namespace orn
