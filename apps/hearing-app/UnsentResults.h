#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/EarResult.h>

namespace orn {

/// A finished test that the service has not been known to take.
struct UnsentResult {
  std::string user;                             ///< Whose it is, by the id of the settings.
  std::chrono::system_clock::time_point ended;  ///< To the second.
  EarResult left, right;
  std::string headset;  ///< The audiometer's address or the earphones' model.

  /// Whether one of the service's stored tests is this one: same thresholds and device, not stored before it ended.
  bool isAmong(const nlohmann::json& storedTests) const;

  bool operator==(const UnsentResult&) const = default;
};

/// The unsent results of this machine, in one file of the documents folder. Main thread.
class UnsentResults {
 public:
  UnsentResults() = delete;

  static std::vector<UnsentResult> ofUser(const std::string& user);

  /// False if it could not be written.
  static bool add(const UnsentResult& result);

  /// One of them; the others stay.
  static void remove(const UnsentResult& result);
};

}  // namespace orn
