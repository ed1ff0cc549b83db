#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orn::bench {

/// Runs a program to its end, without its output, and returns the processor time that it took, in seconds; nothing if
/// it failed or is not there.
std::optional<double> processorSecondsOf(const std::vector<std::string>& command);

}  // namespace orn::bench
