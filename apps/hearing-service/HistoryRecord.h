#pragma once

#include <nlohmann/json_fwd.hpp>

#include "hearing-service/TestStore.h"

namespace orn::service {

/// A stored test as the history lists it, with all 39 keys of such a record. Keys for which this service has no value
/// are 0, false or null: scores, grades and the person's details.
nlohmann::json historyRecord(const StoredTest& test);

}  // namespace orn::service
