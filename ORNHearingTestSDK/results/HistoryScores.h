#pragma once

#include <cstdint>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

class ORNListenTest;

/// One ear of a stored test as an ear result dictionary of all seven frequencies; "-1" where the record has none.
ORN_EXPORT EarResult earResultOf(const ORNListenTest& test, bool isLeft);

/// Scores out of 100 of a stored test, by the profile as it is now. A loss above 100 dB gives a negative score.
struct HistoryScores {
  std::int64_t right = 0;  ///< Of the right ear.
  std::int64_t left = 0;   ///< Of the left ear.
  std::int64_t total = 0;  ///< Of both.
};
ORN_EXPORT HistoryScores scoresOf(const ORNListenTest& test);

}  // namespace orn
