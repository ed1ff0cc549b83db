#include <stdexcept>
#include <gmock/gmock.h>

#include <unistd.h>

#include <ORNHearingTestSDK/platform/linux/SharedLibrary.h>

namespace orn {
namespace {

struct Library : SharedLibrary {
  explicit Library(const char* name) : SharedLibrary(name) {}
  using SharedLibrary::find;
};

TEST(SharedLibrary, IsLoadedWithItsFunctionsOrSaysWhatIsMissing) {
  EXPECT_EQ(Library("libc.so.6").find<pid_t()>("getpid")(), ::getpid());
  const auto complainsOf = [](const char* name) {
    return testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr(name));
  };
  EXPECT_THAT([] { Library("libno-such-library.so.1"); }, complainsOf("libno-such-library.so.1"));
  EXPECT_THAT([] { Library("libc.so.6").find<void()>("no_such_function"); }, complainsOf("no_such_function"));
}

}  // namespace
}  // namespace orn
