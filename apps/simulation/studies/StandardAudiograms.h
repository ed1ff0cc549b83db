#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string_view>

namespace orn::simulation {

/// The ten standard audiograms of N. Bisgaard, M. S. M. G. Vlaming and M. Dahlquist, "Standard Audiograms for the IEC
/// 60118-15 Measurement Procedure", Trends in Amplification 14(2), 2010: N1 to N7 flat and moderately sloping, S1 to S3
/// steep. They go from 250 to 6000 Hz.
struct StandardAudiogram {
  std::string_view name;
  std::array<double, 10> levels;  ///< dB HL at kStandardAudiogramFrequencies.
};

inline constexpr std::array<std::int32_t, 10> kStandardAudiogramFrequencies{250,  375,  500,  750,  1000,
                                                                            1500, 2000, 3000, 4000, 6000};

inline constexpr std::array<StandardAudiogram, 10> kStandardAudiograms{{
    {"N1", {10, 10, 10, 10, 10, 10, 15, 20, 30, 40}},
    {"N2", {20, 20, 20, 22.5, 25, 30, 35, 40, 45, 50}},
    {"N3", {35, 35, 35, 35, 40, 45, 50, 55, 60, 65}},
    {"N4", {55, 55, 55, 55, 55, 60, 65, 70, 75, 80}},
    {"N5", {65, 67.5, 70, 72.5, 75, 80, 80, 80, 80, 80}},
    {"N6", {75, 77.5, 80, 82.5, 85, 90, 90, 95, 100, 100}},
    {"N7", {90, 92.5, 95, 100, 105, 105, 105, 105, 105, 105}},
    {"S1", {10, 10, 10, 10, 10, 10, 15, 30, 55, 70}},
    {"S2", {20, 20, 20, 22.5, 25, 35, 55, 75, 95, 95}},
    {"S3", {30, 30, 35, 47.5, 60, 70, 75, 80, 80, 85}},
}};

/// The thresholds at the seven test frequencies; 125 Hz has that of 250 Hz, and 8000 Hz that of 6000 Hz, which are the
/// ends of the table.
std::map<std::int32_t, double> thresholdsOf(const StandardAudiogram& audiogram);

}  // namespace orn::simulation
