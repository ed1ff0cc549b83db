#pragma once

#include <functional>
#include <string>

#include <ORNHearingTestSDK/common/EarResult.h>

namespace orn {

class ORNHearingTest;

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

  /// A tone could not be started on the earphone path, since the ear's calibration record or the value that it needs is
  /// missing. No level was recorded; the test has been paused. In a timed test continueTest() tries the same tone
  /// again, in a manual one playAtHz() does.
  std::function<void(ORNHearingTest& hearingTest, bool isLeft)> calibrationMissing;
};

}  // namespace orn
