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

/// Gets a session's calibration from the cache or the service and puts the session on that path, told in full: `done`
/// is called once, after this has returned, without an error only if the session has all that its frequencies of now
/// need. Earphones whose calibration is cached answer too; a refusal and a reply that is not enough are errors, of the
/// domains kServiceDomain and kNoCalibrationDomain, and are not kept. setKV50MAC() and setEarPlugModel() tell none of
/// this.
ORN_EXPORT void fetchCalibration(ORNManualHearingTest& session, OutputPath path, const std::string& device,
                                 ORNHearingTest::CompletionHandler done);

/// Whether a session has all the records that its path needs, with a number for each frequency under test.
ORN_EXPORT bool isCalibrated(ORNManualHearingTest& session, OutputPath path);

}  // namespace orn
