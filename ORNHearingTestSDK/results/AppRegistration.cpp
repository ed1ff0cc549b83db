#include <ORNHearingTestSDK/results/AppRegistration.h>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {

void registerAppKey(const std::string& appKey) {
  UserDefaults& defaults = *Platform::current().userDefaults;
  defaults.removeValue(kAppKeyDefault);
  defaults.setValue(kAppKeyDefault, appKey);
  defaults.synchronize();
}

}  // namespace orn
