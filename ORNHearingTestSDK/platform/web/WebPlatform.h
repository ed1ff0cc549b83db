#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

/// The platform that a page is; the settings are kept under the application's name. There is no output until the page
/// opens the sound, by Module.ornSound.open().
Platform webPlatform(const std::string& application, const std::string& version);

}  // namespace orn
