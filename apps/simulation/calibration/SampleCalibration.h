#pragma once

#include <string>
#include <string_view>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>

namespace orn::simulation {

/// Address of the simulated audiometer.
inline constexpr auto kSimulatedAddress = "AA:BB:CC:DD:EE:FF";

/// Calibration replies as the service sends them, with enciphered values, for a sample audiometer and sample earphones
/// on which 90 dB HL is close to full scale at every frequency.
std::string_view sampleAudiometerReply();
std::string_view sampleEarphonesReply();

/// The reply for a path, and the address or the model of its device.
std::string sampleReply(OutputPath path);
std::string sampleDevice(OutputPath path);

}  // namespace orn::simulation
