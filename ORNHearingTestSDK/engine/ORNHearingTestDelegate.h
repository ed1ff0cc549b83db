#pragma once

#include <functional>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

class ORNHearingTest;

/// Why a tone does not sound.
enum class ToneMissingReason {
  Calibration,  ///< Its level is not known: the device's or the ear's own record, or its value, is absent.
  Recording,    ///< There are no samples of it: no tone file, or a frequency for which the stream has no table.
  Output,       ///< The output is absent, lost, stalled or held back.
};

/// What a session tells its host. Every operation is optional: an empty member is not called. All calls come on the
/// main thread, and any of them may let go of the session. `hz` and `db` are texts such as "1000hz" and "40db".
struct ORNHearingTestDelegate {
  /// A tone has just been started, once for each presentation. The volume is the linear gain of the tone's player on
  /// the earphone path and the amplitude of the samples, 0 to 1, on the audiometer path.
  std::function<void(ORNHearingTest& hearingTest, const std::string& hz, const std::string& db, float volume,
                     bool isLeft)>
      willTestAtHz;

  /// A threshold has been settled. One of the two below follows at once if it was the last of its ear.
  std::function<void(ORNHearingTest& hearingTest, const std::string& hz, const std::string& db, bool isLeft)>
      willSelectedAtHz;

  /// The first ear has all its thresholds; the test has been paused. The other ear begins with startTest().
  std::function<void(ORNHearingTest& hearingTest, const EarResult& result, bool isLeft)> oneEarCompleteWithResult;

  /// Both ears have all their thresholds; the test has been paused. The result is submitted after this call.
  std::function<void(ORNHearingTest& hearingTest, const EarResult& left, const EarResult& right)>
      completeWithLeftResult;

  /// A tone does not sound, for this reason. Nothing was judged or recorded, a press counts for nothing, and the test
  /// has been paused. In a timed test continueTest() tries the same tone again, at once or, called from within this
  /// call, one presentation time later; in a manual one playAtHz() does, but not from within this call.
  std::function<void(ORNHearingTest& hearingTest, ToneMissingReason reason, bool isLeft)> toneMissing;

  /// The submission of the session's result has ended, once for each: without an error if the service has taken it,
  /// else with the reason, a refusal in the service's own words included. See ResultSubmission::submit.
  std::function<void(ORNHearingTest& hearingTest, const std::optional<Error>& error)> submissionEnded;
};

}  // namespace orn
