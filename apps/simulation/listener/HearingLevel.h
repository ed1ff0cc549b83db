#pragma once

#include <cstdint>
#include <optional>

#include <ORNHearingTestSDK/engine/SessionCalibration.h>

namespace orn::simulation {

/// The level in dB HL that a sine of that amplitude, relative to full scale, has at the ear under test; nothing where
/// the session has no value for it.
std::optional<double> levelOf(const ORNManualHearingTest& session, OutputPath path, std::int32_t hz, double amplitude);

}  // namespace orn::simulation
