#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>

#include "simulation/studies/ToneAnalysis.h"

namespace orn::simulation {

/// One cell of an ear's grid: the tone as it left the output, beside what it should be.
struct ConformanceCell {
  bool isLeft = false;
  std::int32_t hz = 0;
  std::int32_t db = 0;              ///< What it should be, in dB HL.
  std::optional<ToneFigures> tone;  ///< Nothing if no tone came out.
  std::optional<double> level;      ///< What it is, in dB HL, by the calibration.
  std::optional<double> otherEar;   ///< Level of the other channel; nothing if it is silent.
  bool clips = false;               ///< The calibration asks for more than full scale.
  bool isUnderResolution = false;   ///< The calibration asks for less than one step of 16 bits.
  std::vector<std::string> misses;  ///< The limits that it misses, by name.

  double levelError() const { return level ? *level - db : 0; }
};

/// The limits of IEC 60645-1 for pure tones by air conduction, and one of ours: a seam must not be there at all.
namespace limits {
inline constexpr double kLevel = 3, kLevelAbove4kHz = 5;  // dB
inline constexpr double kFrequency = 0.01;
inline constexpr double kDistortion = 0.025;
inline constexpr double kShortest = 0.020, kLongest = 0.200;  // rise and fall, s
inline constexpr double kOvershoot = 1;                       // dB
}  // namespace limits

/// Renders and measures one cell. Throws std::runtime_error if the calibration lacks what it needs. Puts a platform of
/// its own in force meanwhile. Main thread.
ConformanceCell measureCell(OutputPath path, const std::string& calibrationReply, bool isLeft, std::int32_t hz,
                            std::int32_t db);

/// Every cell of both ears' grids.
std::vector<ConformanceCell> measureConformance(OutputPath path, const std::string& calibrationReply);

}  // namespace orn::simulation
