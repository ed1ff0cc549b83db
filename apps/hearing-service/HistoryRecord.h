#pragma once

#include <nlohmann/json_fwd.hpp>

#include "hearing-service/TestStore.h"

namespace orn::service {

/// A stored test as the history lists it, with all 39 keys of such a record. What this service has no value for is 0,
/// false or null: scores, grades and the person's particulars.
nlohmann::json historyRecord(const StoredTest& test);

}  // namespace orn::service
