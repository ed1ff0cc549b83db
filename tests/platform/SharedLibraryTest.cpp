#include <stdexcept>
#include <string>
#include <gmock/gmock.h>

#include <unistd.h>

#include <ORNHearingTestSDK/platform/linux/SharedLibrary.h>

namespace orn {
namespace {

struct LibC : SharedLibrary {
  LibC() : SharedLibrary("libc.so.6") {}
  ORN_FUNCTION(getpid);
};

struct NoLibrary : SharedLibrary {
  NoLibrary() : SharedLibrary("libno-such-library.so.1") {}
};

struct NoFunction : LibC {
  void (*missing)() = find<void()>("no_such_function");
};

template <class Library>
std::string complaint() {
  try {
    Library();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return {};
}

TEST(SharedLibrary, IsLoadedWithItsFunctionsOrSaysWhatIsMissing) {
  EXPECT_EQ(LibC().getpid(), ::getpid());
  EXPECT_THAT(complaint<NoLibrary>(), testing::HasSubstr("libno-such-library.so.1"));
  EXPECT_THAT(complaint<NoFunction>(), testing::HasSubstr("no_such_function"));
}

}  // namespace
}  // namespace orn
