#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

// From hearing levels in dB HL to what drives the sound, and back. What a calibration value means acoustically is known
// to the service alone; the formulas belong to its values. Pure functions, any thread.

/// The audiometer's amplitude, a factor on full-scale samples from 0 to 1, for `db` dB HL at the leading number of
/// `hz`: 10^((db - A + B - C) / 20) / 10^7, with the device's own value A and those of the two reference earplugs, B
/// and C. It is capped just below 1 and then lowered by 10 dB if the device is of batch 1. A record that is null, and a
/// value that is absent or no number, count as 0 dB. Values that have no result give silence, 0.
ORN_EXPORT double audiometerAmplitude(const ORNDeviceVolumeIOS* ab, const ORNDeviceVolumeIOS* aabb,
                                      const ORNDeviceVolumeIOS* xxyy, std::int32_t db, std::string_view hz);

/// The player's volume, a factor on the recording, for `level` dB HL at `hz` Hz: 10^((level - c) / 20) / 10^7, with 40
/// dB more up to level 40, where the quieter recording is played. It may exceed 1. A frequency other than the seven
/// that records have counts as c = 0. Nothing if the record is null, lacks the value, or gives no positive finite
/// volume in single precision: a tone at a guessed level must not be played.
ORN_EXPORT std::optional<double> earphoneGain(const ORNDeviceVolumeIOS* record, std::int32_t hz, std::int32_t level);

/// For measuring instruments: the level in dB HL that an observed amplitude, as a factor on full scale, stands for. The
/// reverse of audiometerAmplitude but for the cap. Silence is minus infinity.
ORN_EXPORT double audiometerLevel(const ORNDeviceVolumeIOS* ab, const ORNDeviceVolumeIOS* aabb,
                                  const ORNDeviceVolumeIOS* xxyy, double amplitude, std::string_view hz);

/// For measuring instruments: the level in dB HL that an observed factor on the louder recording stands for. Silence is
/// minus infinity; nothing if the record is null or lacks the value.
ORN_EXPORT std::optional<double> earphoneLevel(const ORNDeviceVolumeIOS* record, std::int32_t hz,
                                               double fullScaleFactor);

/// Whether a record has a value at `hz` Hz, a number or not. A session asks this before each tone, since a level must
/// never be guessed. At a frequency other than the seven every record has one, 0 dB. False for null.
ORN_EXPORT bool hasCalibrationValue(const ORNDeviceVolumeIOS* record, std::int32_t hz);

/// Whether a record has a value that is a number for each of these frequency keys: the stricter question before a whole
/// test. Not so for a frequency other than the seven. False for null.
ORN_EXPORT bool hasCalibrationNumbers(const ORNDeviceVolumeIOS* record, const std::vector<std::string>& hzs);

}  // namespace orn
