#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The moment of a stored test, in milliseconds since 1970, as "yyyy-MM-dd HH:mm:ss" in the time zone of the process;
/// empty for one that no calendar reaches. Years below 1000 or above 9999 have as many digits as they need. Any thread.
ORN_EXPORT std::string testTimeText(double createDate);

}  // namespace orn
