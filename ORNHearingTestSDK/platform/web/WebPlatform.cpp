#include <ORNHearingTestSDK/platform/web/WebPlatform.h>

#include <ORNHearingTestSDK/platform/web/WebAudioOutput.h>
#include <ORNHearingTestSDK/platform/web/WebAudioSession.h>
#include <ORNHearingTestSDK/platform/web/WebDevice.h>
#include <ORNHearingTestSDK/platform/web/WebFileManager.h>
#include <ORNHearingTestSDK/platform/web/WebRunLoop.h>
#include <ORNHearingTestSDK/platform/web/WebURLSession.h>
#include <ORNHearingTestSDK/platform/web/WebUserDefaults.h>

namespace orn {

Platform webPlatform(const std::string& application, const std::string& version) {
  const auto runLoop = std::make_shared<WebRunLoop>();
  return {runLoop,
          std::make_shared<WebAudioOutput>(runLoop),
          std::make_shared<WebAudioSession>(),
          std::make_shared<WebURLSession>(),
          std::make_shared<WebUserDefaults>(application),
          std::make_shared<WebFileManager>(),
          std::make_shared<WebDevice>(version)};
}

}  // namespace orn
