#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Stores the application key, which every request carries, in place of an earlier one. Call it once, before any
/// request. Main thread.
ORN_EXPORT void registerAppKey(const std::string& appKey);

}  // namespace orn
