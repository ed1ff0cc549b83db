#include "hearing-service/HistoryRecord.h"

#include <nlohmann/json.hpp>

namespace orn::service {
namespace {

constexpr std::array kZeroKeys = {"leftResult_d", "leftScore", "score", "rightScore", "rightResul_d"};
constexpr std::array kFalseKeys = {"diagnose", "calibration"};
constexpr std::array kNullKeys = {
    "ordinaryEmail", "personID",      "ordinaryUserID",   "rightResult",  "leftResult", "grade",   "deviceVolumeIOS",
    "noise",         "ordinaryPhone", "ordinaryUserName", "correctModel", "personName", "versions"};

}  // namespace

nlohmann::json historyRecord(const StoredTest& test) {
  nlohmann::json record = test.fields;
  record["base"] = test.fields.at("base") == "1" ? 1 : 0;
  record["id"] = std::to_string(test.id);
  record["createDate"] = static_cast<double>(test.createDate.count());
  for (const char* key : kZeroKeys) record[key] = 0.0;
  for (const char* key : kFalseKeys) record[key] = false;
  for (const char* key : kNullKeys) record[key] = nullptr;
  return record;
}

}  // namespace orn::service
