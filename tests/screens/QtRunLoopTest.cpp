#include <chrono>
#include <memory>

#include <QtCore/QEventLoop>

#include <ORNHearingTestSDK/contracts/RunLoopContract.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>

#include "../contracts/ContractExpectations.h"

namespace orn {
namespace {

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

}  // namespace
}  // namespace orn
