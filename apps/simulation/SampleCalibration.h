#pragma once

#include <string_view>

namespace orn::simulation {

/// Calibration replies as the service sends them, values enciphered, for a sample audiometer and sample earphones on
/// which 90 dB HL is close to full scale at every frequency.
std::string_view sampleAudiometerReply();
std::string_view sampleEarphonesReply();

}  // namespace orn::simulation
