#pragma once

#include <chrono>
#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// A date as text in the time zone of the process, by a strftime pattern such as "%Y%m%d"; empty for a date that the
/// calendar functions don't reach. Any thread.
ORN_EXPORT std::string dateText(std::chrono::system_clock::time_point date, const char* pattern);

/// The same for dates that the system clock's nanoseconds, which end with the year 2262, don't reach.
ORN_EXPORT std::string dateText(std::chrono::sys_seconds date, const char* pattern);

}  // namespace orn
