#pragma once

#include <map>
#include <string>

#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {

/// Orders frequency keys such as "1000hz" by their leading integer, then as texts.
struct FrequencyOrder {
  /// Whether a comes before b.
  bool operator()(const std::string& a, const std::string& b) const {
    const auto hzA = intValue(a), hzB = intValue(b);
    return hzA != hzB ? hzA < hzB : a < b;
  }
};

/// Ear result dictionary: from frequency key to threshold in dB HL as a decimal text, such as "1000hz" to "40". "-1" or
/// a missing key means no result.
using EarResult = std::map<std::string, std::string, FrequencyOrder>;

}  // namespace orn
