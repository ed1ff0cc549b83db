#include <QtCore/QEventLoop>

#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>

#include "../platform/RunLoopContract.h"

namespace orn {
namespace {

/// A loop on Qt's events; it only ever waits for what must come.
struct OnQtEvents {
  std::unique_ptr<QtRunLoop> loop = std::make_unique<QtRunLoop>();
  QEventLoop events{};
  bool finished = false;
  static constexpr bool kIsVirtual = false;

  void finish() { finished = true, events.quit(); }
  bool run() {
    finished = false;
    loop->performAfterDelay(kGiveUp, [this] { events.quit(); });
    return events.exec(), finished;
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, RunLoopContract, OnQtEvents);

TEST(QtRunLoop, MakesItsCallsInALoopNestedInACall) {
  OnQtEvents time;
  QEventLoop dialog;
  std::string said;
  const auto nest = [&] {
    time.loop->performAfterDelay(1ms, [&] { said += "timed ", dialog.quit(); });
    time.loop->dispatchAsync([&] { said += "handed "; });
    dialog.exec();
  };
  time.loop->performAfterDelay(kGiveUp, [&] { dialog.quit(); });
  time.loop->performAfterDelay(0ns, nest);
  time.loop->performAfterDelay(5ms, [&] { time.loop->dispatchAsync([&] { nest(), time.finish(); }); });
  EXPECT_TRUE(time.run());
  EXPECT_EQ(said, "handed timed handed timed ");
}

}  // namespace
}  // namespace orn
