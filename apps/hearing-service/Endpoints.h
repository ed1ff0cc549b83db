#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "hearing-service/Request.h"
#include "hearing-service/TestStore.h"

namespace orn::service {

/// "rspCode" of the replies.
enum class Outcome { Success = 0, BadRequest = 1, StoreFailure = 2 };

/// A reply that says that nothing was done, and why.
nlohmann::json refusal(Outcome outcome, std::string_view why);

/// The path of a request without personal data: "*" in place of user id and application key, and "(unknown path)" for a
/// path that is not the service's.
std::string pathOfNobody(std::string_view target);

/// Carries a request out. A bad one, or one that the store fails on, ends in a refusal and leaves the store as it was.
/// `now` dates a submitted test. Any thread.
nlohmann::json replyTo(const Request& request, TestStore& store, std::chrono::system_clock::time_point now);

}  // namespace orn::service
