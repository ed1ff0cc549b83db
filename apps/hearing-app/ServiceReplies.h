#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// What the library asks the service for, by a request's address.
enum class Asked { Calibration, Submission, Other };
Asked askedFor(const std::string& url);

/// Domain of the error that stands for a calibration of no use.
inline constexpr auto kNoCalibration = "calibration";

/// A reply as this application takes it. A calibration without the records for a test by the device that this very
/// request asks about becomes an error, so that the library opens no test and keeps nothing in its cache; and so does
/// the reply to a result that the service does not take. Any thread.
URLReply judged(const URLRequest& request, URLReply reply);

}  // namespace orn
