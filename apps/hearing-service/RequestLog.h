#pragma once

#include <chrono>
#include <functional>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "hearing-service/Request.h"

namespace orn::service {

/// Takes one line, without a line break. Called on any thread, on several at once.
using Log = std::function<void(const std::string& line)>;

/// Whether a log may hold personal data.
enum class LogDetail { NoPersons, Persons };

/// A request and its outcome: method, path, status, "rspCode", milliseconds, and the reason of a refusal. With
/// LogDetail::Persons also the whole path and the body, shortened.
std::string logLine(const Request& request, unsigned status, const nlohmann::json& reply,
                    std::chrono::steady_clock::duration took, LogDetail detail);

/// A log on standard error. A line that can't be written at once is dropped, so that the service never waits for its
/// log.
Log standardErrorLog();

}  // namespace orn::service
