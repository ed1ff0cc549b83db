#pragma once

#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// Why a request can't be sent exactly as given; nothing if it can. What libcurl itself refuses is not checked here.
/// Any thread.
std::optional<std::string> complaintAbout(const URLRequest& request);

}  // namespace orn
