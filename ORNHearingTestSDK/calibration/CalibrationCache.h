#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// The names, in the documents folder, of the files that keep the replies with a device's calibration. Any thread.

/// The reply for an audiometer's address, as it came; `prefix` keeps caches apart and is empty for a session's own. The
/// name for an empty address is what all the names with that prefix begin with.
ORN_EXPORT std::string audiometerCacheName(const std::string& prefix, const std::string& address);

/// The reply for an earphones' model on this machine, as a property list.
ORN_EXPORT std::string earphoneCacheName(const std::string& model);

}  // namespace orn
