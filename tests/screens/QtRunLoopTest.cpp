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

TEST(QtRunLoop, CallsGoOnInALoopNestedInACall) {
  OnQtEvents time;
  QEventLoop dialog;
  time.loop->performAfterDelay(0ns, [&] { dialog.exec(), time.finish(); });
  time.loop->performAfterDelay(1ms, [&] { time.loop->dispatchAsync([&] { dialog.quit(); }); });
  EXPECT_TRUE(time.run());
}

}  // namespace
}  // namespace orn
