#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// A finished test with all that is to be known of it later: to keep, to write as CSV (TestCSV.h), to print
/// (screens/PrintableReport.h).
struct FinishedTest {
  /// Thresholds in dB HL, as a session's getTestResult() gives them.
  EarResult left;
  EarResult right;

  /// In dB, by HearingScore and the profile at the end of the test.
  std::int64_t leftLoss = 0;
  std::int64_t rightLoss = 0;

  std::string device;                           ///< The audiometer's address or the earphones' model.
  std::chrono::system_clock::time_point ended;  ///< When its last threshold was found.

  /// How it was verified that the tones of this very device have the right levels, in words; empty if it was not. The
  /// library can't know: it plays what the calibration says.
  std::string levelVerification;
};

/// One that ends now, by the platform's clock and the profile in its settings. Main thread.
ORN_EXPORT FinishedTest finishedTest(const EarResult& left, const EarResult& right, const std::string& device);

}  // namespace orn
