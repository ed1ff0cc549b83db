#pragma once

#include <string>
#include <vector>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

class ORNDeviceCorrect;

/// The ways that a test's tones can take.
enum class OutputPath { Audiometer, Earphones };

/// The model that earphones are tested as, whatever they are.
inline constexpr auto kEarphoneModel = "1";

/// Whether a reply of the service, as JSON text, has all the records that the path needs, each with a number for every
/// frequency key: what to ask before a test is begun. False for a refusal, and for anything but a reply. Any thread.
ORN_EXPORT bool isCalibration(OutputPath path, const std::string& reply, const std::vector<std::string>& hzs);
ORN_EXPORT bool isCalibration(OutputPath path, const ORNDeviceCorrect& reply, const std::vector<std::string>& hzs);

/// The domain of the error that stands for a calibration that is there and not enough for a test.
inline constexpr auto kNoCalibrationDomain = "calibration";

}  // namespace orn
