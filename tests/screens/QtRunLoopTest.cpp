#include <memory>
#include <string>

#include <QtCore/QEventLoop>
#include <gtest/gtest.h>

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

  void finish() {
    finished = true;
    events.quit();
  }
  bool run() {
    finished = false;
    loop->performAfterDelay(kGiveUp, [this] { events.quit(); });
    events.exec();
    return finished;
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, RunLoopContract, OnQtEvents);

TEST(QtRunLoop, MakesItsCallsInALoopNestedInACall) {
  QtRunLoop loop;
  QEventLoop outer, dialog;
  std::string said;
  const auto nest = [&](const std::string& word) {
    loop.performAfterDelay(1ms, [&, word] { said += word + " "; });
    loop.dispatchAsync([&] { said += "handed "; });
    loop.performAfterDelay(2ms, [&] { dialog.quit(); });
    dialog.exec();
  };
  loop.performAfterDelay(kGiveUp, [&] { dialog.quit(), outer.quit(); });
  loop.performAfterDelay(0ns, [&] { nest("timed"); });
  loop.performAfterDelay(10ms, [&] { loop.dispatchAsync([&] { nest("dispatched"), outer.quit(); }); });
  outer.exec();
  EXPECT_EQ(said, "handed timed handed dispatched ");
}

}  // namespace
}  // namespace orn
