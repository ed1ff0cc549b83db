#include <chrono>
#include <memory>

#include <QtCore/QEventLoop>

#include <ORNHearingTestSDK/contracts/RunLoopContract.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>

#include "../contracts/ContractExpectations.h"

namespace orn {
namespace {

TEST(QtRunLoop, KeepsTheContractsOfALoop) {
  contract::expectKept(contract::checkRunLoop([] {
    const auto loop = std::make_shared<QtRunLoop>();
    // Runs Qt's events, and with them the loop.
    const auto runFor = [weak = std::weak_ptr(loop)](std::chrono::nanoseconds span) {
      QEventLoop events;
      weak.lock()->performAfterDelay(span, [&events] { events.quit(); });
      events.exec();
    };
    return contract::RunLoopUnderTest{loop, runFor, true};
  }));
}

}  // namespace
}  // namespace orn
