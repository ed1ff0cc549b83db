#pragma once

#include <cstdint>
#include <string>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Hearing loss of one ear and what to say about it. Main thread.
class ORN_EXPORT HearingScore {
 public:
  HearingScore() = delete;

  /// Mean loss of an ear in whole dB, never below 0, after an allowance for the age and the sex of the user, which it
  /// reads from the user defaults BIRTHDAY and USERSEX at each call. Thresholds of -1 are left out; an ear without any
  /// gives 0, and so does a birthday a year or more ahead.
  static std::int64_t computeEarTestResult(const EarResult& earResult);

  /// One of six sentences in Chinese for a loss in dB, after the grades of hearing impairment at 25, 40, 55, 70 and 90.
  static std::string computeResultString(std::int64_t loss);
};

}  // namespace orn
