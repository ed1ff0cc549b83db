#pragma once

#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// Why a request can't go out to the letter; nothing if it can. What libcurl refuses itself is not looked at. Any
/// thread.
std::optional<std::string> complaintAbout(const URLRequest& request);

}  // namespace orn
