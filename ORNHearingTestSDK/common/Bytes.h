#pragma once

#include <cstdint>
#include <vector>

namespace orn {

using Bytes = std::vector<std::uint8_t>;

}  // namespace orn
