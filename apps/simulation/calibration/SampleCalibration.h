#pragma once

#include <string>
#include <string_view>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>

namespace orn::simulation {

/// Of the simulated audiometer.
inline constexpr auto kSimulatedAddress = "AA:BB:CC:DD:EE:FF";

/// Calibration replies as the service sends them, values enciphered, for a sample audiometer and sample earphones on
/// which 90 dB HL is close to full scale at every frequency.
std::string_view sampleAudiometerReply();
std::string_view sampleEarphonesReply();

/// The one that a path takes, and the address or the model of the device that it is for.
std::string sampleReply(OutputPath path);
std::string sampleDevice(OutputPath path);

}  // namespace orn::simulation
