#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// What the library asks the service for, by a request's address.
enum class Asked { Calibration, Registration, Submission, Other };
Asked askedFor(const std::string& url);

/// Domains of the errors that judged() makes.
inline constexpr auto kRefusal = "service", kNoCalibration = "calibration";

/// A reply as this application takes it: a refusal, which the library tells nobody apart from a success, becomes an
/// error, and so does a reply that is no JSON object, and a calibration without the records for a test by the device
/// that this very request asks about. The library then opens no test, and keeps nothing in its cache. Any thread.
URLReply judged(const URLRequest& request, URLReply reply);

}  // namespace orn
