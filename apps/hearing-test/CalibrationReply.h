#pragma once

#include <string>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>

namespace orn {

/// The calibration reply in a file, or the sample one of the path if the file's name is empty. Throws
/// std::runtime_error with one line if the file is not a reply of code 0 with records.
std::string calibrationReply(OutputPath path, const std::string& file);

}  // namespace orn
