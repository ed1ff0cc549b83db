#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace orn::simulation {

/// What `job` gives for 0 to `count` - 1, worked out by as many processes as `workers` says, at least one. Each of them
/// has its own of what is single in a process, such as the platform in force. Call it before this process has a second
/// thread, since only the calling thread goes on in a worker. Throws std::runtime_error with what a job threw, or if a
/// worker ends early.
std::vector<std::string> inWorkerProcesses(std::size_t count, std::size_t workers,
                                           const std::function<std::string(std::size_t)>& job);

/// The cores that this process may use.
std::size_t availableCores();

}  // namespace orn::simulation
