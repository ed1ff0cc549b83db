#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace orn::service {

/// The audiometer of this address is of production series 1, whose output is lowered; all others are of series 2.
constexpr std::string_view kAddressOfSeries1 = "11:11:11:11:11:11";

// Calibration replies, with enciphered values, for any hardware that is asked for. The machine is the client's hardware
// model.

/// The audiometer's own record and those of the reference earplug models "2" and "1".
nlohmann::json audiometerReply(const std::string& machine, const std::string& address);

/// The earphones' record of each ear.
nlohmann::json earphonesReply(const std::string& machine, const std::string& model);

}  // namespace orn::service
