#pragma once

#include <system_error>

namespace orn {

/// An error number of libpulse as an error code.
std::error_code pulseError(int number);

}  // namespace orn
