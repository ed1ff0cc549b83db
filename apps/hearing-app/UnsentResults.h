#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/EarResult.h>

namespace orn {

/// A finished test that the service is not known to have taken.
struct UnsentResult {
  std::string user;                             ///< The user's id in the settings.
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

  /// Removes one of them, if it is there.
  static void remove(const UnsentResult& result);
};

}  // namespace orn
