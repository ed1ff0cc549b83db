#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The user default that says where the cloud service is: as host or host:port, which is asked by plain HTTP, or with
/// "https://" in front, which is asked by TLS alone.
inline constexpr auto kServiceHostDefault = "SERVICEHOST";

/// Why a text can't be that setting, in words that hold nothing of it; nothing if it can. Any thread.
ORN_EXPORT std::optional<std::string> complaintAboutServiceHost(std::string_view text);

/// What addresses at a valid service host begin with: "http://host:port".
std::string serviceOrigin(const std::string& host);

}  // namespace orn
