#include <chrono>
#include <memory>
#include <utility>

#include <QtCore/QEventLoop>
#include <QtWidgets/QDialog>

#include <ORNHearingTestSDK/contracts/RunLoopContract.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>

#include "../contracts/ContractExpectations.h"

namespace orn {
namespace {

using namespace std::chrono_literals;

/// Runs Qt's events, and with them the loop, for a span of time.
void runFor(RunLoop& loop, std::chrono::nanoseconds span) {
  QEventLoop events;
  loop.performAfterDelay(span, [&events] { events.quit(); });
  events.exec();
}

TEST(QtRunLoop, KeepsTheContractsOfALoop) {
  contract::expectKept(contract::checkRunLoop([] {
    const auto loop = std::make_shared<QtRunLoop>();
    return contract::RunLoopUnderTest{
        loop, [weak = std::weak_ptr(loop)](std::chrono::nanoseconds span) { runFor(*weak.lock(), span); }, true};
  }));
}

TEST(QtRunLoop, WhileATickHasADialogOpenOtherCallsGoOnAndTheTickWaits) {
  QtRunLoop loop;
  bool isOpen = false, overlaps = false;
  int closed = 0;
  const auto timer = loop.scheduledTimer(1ms, [&] {
    overlaps = overlaps || isOpen;
    if (std::exchange(isOpen, true)) return;
    QDialog dialog;
    loop.performAfterDelay(5ms, [&] { loop.dispatchAsync([&] { dialog.done(7); }); });
    if (dialog.exec() == 7) ++closed;
    isOpen = false;
  });
  for (int i = 0; i < 1000 && closed < 2; ++i) runFor(loop, 10ms);
  EXPECT_GE(closed, 2);
  EXPECT_FALSE(overlaps);
}

}  // namespace
}  // namespace orn
