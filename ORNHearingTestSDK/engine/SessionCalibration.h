#pragma once

#include <string>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// A session's calibration by a reply of the service that the host has already, and whether there is enough of it.
// Main thread.

/// Puts a session on a path, with a device, an address or a model, and the records of a reply as far as it has them.
ORN_EXPORT void calibrate(ORNManualHearingTest& session, OutputPath path, const std::string& device,
                          const std::string& reply);

/// Whether a session has all the records that its path needs, with a number for each frequency under test.
ORN_EXPORT bool isCalibrated(ORNManualHearingTest& session, OutputPath path);

}  // namespace orn
