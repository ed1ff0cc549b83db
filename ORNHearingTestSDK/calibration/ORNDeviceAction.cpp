#include <ORNHearingTestSDK/calibration/ORNDeviceAction.h>

#include <utility>

#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>
#include <ORNHearingTestSDK/common/DefaultsReading.h>
#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {

double ORNDeviceCorrectAction::getVolume(bool, std::int32_t, const std::string&, const std::string&) { return 0.0; }

std::shared_ptr<ORNDeviceCorrect> ORNDeviceCorrectAction::getDeviceCorrectWithName(const std::string&,
                                                                                   const std::string&,
                                                                                   const std::string&, bool) {
  return nullptr;
}

void ORNDeviceCorrectAction::saveCorrect(std::int32_t /*correct*/) {
  const auto defaults = Platform::current().userDefaults;
  // What is found is dropped, and that is meant, see docs/BEHAVIOURS.md.
  for (const int hz : kToneFrequencies) (void)defaults->value("LEFT" + std::to_string(hz) + "HZ");
}

void ORNDeviceCorrectAction::getDeviceCorrectsWithErji(std::int32_t /*erji*/, Completion completion) {
  const Platform& platform = Platform::current();
  if (!boolValue(platform.userDefaults->value("LOCAL"))) return;
  platform.runLoop->dispatchAsync([done = std::move(completion)] {
    if (done) done(nullptr);
  });
}

}  // namespace orn
