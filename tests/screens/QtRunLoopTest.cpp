#include <chrono>
#include <memory>

#include <QtCore/QEventLoop>

#include <ORNHearingTestSDK/platform/contract/RunLoopContract.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>

#include "../platform/ContractExpectations.h"

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
        loop, [weak = std::weak_ptr(loop)](std::chrono::nanoseconds span) { runFor(*weak.lock(), span); }};
  }));
}

TEST(QtRunLoop, CallsGoOnInALoopNestedInACall) {
  QtRunLoop loop;
  QEventLoop dialog;
  bool hasReturned = false;
  loop.performAfterDelay(0ns, [&] { hasReturned = dialog.exec() == 7; });
  loop.performAfterDelay(1ms, [&] { loop.dispatchAsync([&] { dialog.exit(7); }); });
  runFor(loop, 50ms);
  EXPECT_TRUE(hasReturned);
}

}  // namespace
}  // namespace orn
