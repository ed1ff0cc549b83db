#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include <ORNHearingTestSDK/contracts/Contract.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn::contract {

/// A new loop, and how it is run. The suite lets go of the loop first; `runFor` must not hold it.
struct RunLoopUnderTest {
  std::shared_ptr<RunLoop> loop;  ///< A new loop.

  /// Makes the calls that are due within a span of the loop's time, then returns.
  std::function<void(std::chrono::nanoseconds span)> runFor;

  /// Whether `runFor` may be called from within an action as well, as a dialog runs the loop; it may then return early.
  bool runsWithin = false;
};

Report checkRunLoop(const std::function<RunLoopUnderTest()>& make);

}  // namespace orn::contract
