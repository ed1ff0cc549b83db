#pragma once

#include <cstdint>

#include <ORNHearingTestSDK/engine/SearchMove.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// How often a level was presented and heard, and presented and not heard.
struct Presentations {
  std::int64_t heard = 0;     ///< How often.
  std::int64_t notHeard = 0;  ///< How often not.
};

/// The standard test's way to a threshold: 10 dB down after each tone heard, 5 dB up after each one not heard, until a
/// level has been heard more often than not over at least three presentations. A rule over answers, with neither sound
/// nor time.
struct ORN_EXPORT StandardSearch {
  static constexpr int kStartRow = 9;                     ///< Of the first tone of a frequency.
  static constexpr std::int64_t kLeastPresentations = 3;  ///< Before a level can be accepted.

  /// A level can be accepted by a tone that was not heard, after two that were.
  static bool isAccepted(const Presentations& level);

  /// What follows a presentation of `row`, counted in `level` already, in a column of so many rows.
  static SearchMove next(const Presentations& level, int row, int rows, bool isHeard);

  /// Whether the first tone after an accepted retest is silent on the audiometer path, by the presentation that the
  /// retest was accepted on. One that was not heard leaves the stream the second until that tone to keep it so, and
  /// that is meant (docs/BEHAVIOURS.md): the search goes 5 dB up from it.
  static constexpr bool isNextToneSilent(bool isRetestHeard) { return !isRetestHeard; }
};

}  // namespace orn
