#include <ORNHearingTestSDK/results/FinishedTest.h>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/results/HearingScore.h>

namespace orn {

FinishedTest finishedTest(const EarResult& left, const EarResult& right, const std::string& device) {
  return {left,
          right,
          HearingScore::computeEarTestResult(left),
          HearingScore::computeEarTestResult(right),
          device,
          Platform::current().runLoop->date(),
          {}};
}

}  // namespace orn
