#include <string>

#include <gtest/gtest.h>

#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>

namespace orn {
namespace {

TEST(LinuxRunLoop, StopEndsRunAfterTheCallThatIsGoingOn) {
  LinuxRunLoop loop;
  std::string said;
  for (const char letter : {'a', 'b', 'c'}) {
    loop.dispatchAsync([&, letter] {
      said += letter;
      loop.stop();
    });
  }
  loop.run();
  EXPECT_EQ(said, "a");
  loop.run();
  EXPECT_EQ(said, "ab");
  loop.stop();
  loop.run();
  EXPECT_EQ(said, "ab");
}

}  // namespace
}  // namespace orn
