#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

// Calibration of a device: from its cache file, which is used for good, or from the service. Main thread.
//
// `assign` is handed the reply's records before the completion is called; both come on the main thread. Files that
// can't be written, and a refusal by the service, go unnoticed: such a fetch ends without an error and without records.

using CalibrationAssignment = std::function<void(const ORNDeviceCorrect&)>;
using CalibrationCompletion = std::function<void(std::optional<Error>)>;

/// By the audiometer's address. A cached reply is handed over, and the completion called, before this returns; the
/// service is asked otherwise, and the completion called once with its answer. `filePrefix` keeps caches apart.
void fetchAudiometerCalibration(const std::string& filePrefix, const std::string& address, CalibrationAssignment assign,
                                CalibrationCompletion completion);

/// By the earphones' model. A cached reply is handed over before this returns, and then the completion is never called:
/// only an answer of the service calls it.
void fetchEarphoneCalibration(const std::string& model, CalibrationAssignment assign, CalibrationCompletion completion);

/// By either, from the same cache files, told in full: a cached reply is taken only if it is enough for these
/// frequencies; so is the service's, which is otherwise neither handed over nor kept. The completion is called once,
/// after this has returned, and has no error only if the records were handed over.
void fetchCalibrationInFull(OutputPath path, const std::string& device, const std::vector<std::string>& hzs,
                            CalibrationAssignment assign, CalibrationCompletion completion);

}  // namespace orn
