#pragma once

#include <span>

#include <ORNHearingTestSDK/engine/SearchMove.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The automatic test's way to a threshold: 10 dB up or down until the answer changes, then 5 dB to close the gap, so
/// that no level is presented twice. A rule over answers, with neither sound nor time.
struct ORN_EXPORT AutomaticSearch {
  static constexpr int kStartRow = 5;  ///< 40 dB HL

  /// What follows a presentation of `row`. `answers` holds what is known of each row of the column, quietest first.
  static SearchMove next(std::span<const Answer> answers, int row, bool isHeard);
};

}  // namespace orn
