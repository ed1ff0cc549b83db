#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>

namespace orn::simulation {

enum class OutputPath { Audiometer, Earphones };

/// What a simulated session is told of its device.
inline constexpr auto kSimulatedAddress = "AA:BB:CC:DD:EE:FF";
inline constexpr auto kSimulatedEarphoneModel = "1";

/// Puts a session on a path with the records of a service's reply, as far as it has them.
void calibrate(ORNManualHearingTest& session, OutputPath path, const std::string& reply);

/// Whether a session has all the records that its path needs, with a value for each frequency under test.
bool hasRecords(ORNManualHearingTest& session, OutputPath path);

/// Whether a service's reply gives a session of that path and those frequencies all its records. Any thread.
bool isCalibration(OutputPath path, const std::string& reply, const std::vector<std::string>& hzs);

/// The level in dB HL that a sine of that amplitude, relative to full scale, has at the ear under test; nothing where
/// the session has no value for it.
std::optional<double> levelOf(const ORNManualHearingTest& session, OutputPath path, std::int32_t hz, double amplitude);

}  // namespace orn::simulation
