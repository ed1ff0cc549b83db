#pragma once

#include <chrono>
#include <functional>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "hearing-service/Request.h"

namespace orn::service {

/// Takes one line, without its end. Any thread, many at once.
using Log = std::function<void(const std::string& line)>;

/// Whether a log may hold what requests tell of persons.
enum class LogDetail { NoPersons, Persons };

/// A request and what came of it: method, path, status, "rspCode", milliseconds, and of a refusal the reason. With
/// persons, the whole path and the body too, shortened.
std::string logLine(const Request& request, unsigned status, const nlohmann::json& reply,
                    std::chrono::steady_clock::duration took, LogDetail detail);

/// A log on standard error. A line that nobody takes at once is lost: the service does not stand still for it.
Log standardErrorLog();

}  // namespace orn::service
