#include <ORNHearingTestSDK/calibration/LevelMapping.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/audio/ORNPlayer.h>
#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {
namespace {

constexpr double kFullScale = 10000000.0;
constexpr double kJustBelowFullScale = 0.9999999;
constexpr double kBatchOneFactor = 0.316;  // very nearly -10 dB

float powerOfTen(float exponent) { return static_cast<float>(std::pow(10.0, static_cast<double>(exponent))); }

/// The record's value at a frequency: "0" at one that records have no field for, nothing if the field is absent.
std::optional<std::string> calibrationText(const ORNDeviceVolumeIOS& record, std::int32_t hz) {
  const auto value = record.valueForKey("s" + std::to_string(hz));
  if (value.is_null()) return std::nullopt;
  return value.is_string() ? value.get<std::string>() : "0";
}

std::optional<std::string> calibrationText(const ORNDeviceVolumeIOS* record, std::int32_t hz) {
  return record ? calibrationText(*record, hz) : std::nullopt;
}

double valueOrZero(const ORNDeviceVolumeIOS* record, std::int32_t hz) {
  return doubleValue(calibrationText(record, hz).value_or("0"));
}

double batchFactor(const ORNDeviceVolumeIOS* ab) { return ab && ab->batch() == 1 ? kBatchOneFactor : 1.0; }

}  // namespace

double audiometerAmplitude(const ORNDeviceVolumeIOS* ab, const ORNDeviceVolumeIOS* aabb, const ORNDeviceVolumeIOS* xxyy,
                           std::int32_t db, std::string_view hz) {
  const auto frequency = intValue(hz);
  const double A = valueOrZero(ab, frequency), B = valueOrZero(aabb, frequency), C = valueOrZero(xxyy, frequency);
  const double t = B + ((static_cast<double>(db) - A) - C);
  double X = static_cast<double>(powerOfTen(static_cast<float>(t / 20.0))) / kFullScale;
  if (std::isnan(X)) return 0.0;
  // Exactly 1 stays, and the cap comes before the batch: both are meant, see docs/BEHAVIOURS.md.
  if (X > 1.0) X = kJustBelowFullScale;
  return X * batchFactor(ab);
}

std::optional<double> earphoneGain(const ORNDeviceVolumeIOS* record, std::int32_t hz, std::int32_t level) {
  const auto text = calibrationText(record, hz);
  if (!text) return std::nullopt;
  float t = static_cast<float>(level) - floatValue(*text);
  if (level <= kHighestQuietLevel) t = t + 40.0F;
  const double gain = static_cast<double>(powerOfTen(t / 20.0F)) / kFullScale;
  const auto volume = static_cast<float>(gain);
  if (!std::isfinite(volume) || volume <= 0) return std::nullopt;
  return gain;
}

double audiometerLevel(const ORNDeviceVolumeIOS* ab, const ORNDeviceVolumeIOS* aabb, const ORNDeviceVolumeIOS* xxyy,
                       double amplitude, std::string_view hz) {
  const auto frequency = intValue(hz);
  return 20.0 * std::log10(amplitude * kFullScale / batchFactor(ab)) + valueOrZero(ab, frequency) -
         valueOrZero(aabb, frequency) + valueOrZero(xxyy, frequency);
}

std::optional<double> earphoneLevel(const ORNDeviceVolumeIOS* record, std::int32_t hz, double fullScaleFactor) {
  const auto text = calibrationText(record, hz);
  if (!text) return std::nullopt;
  return 20.0 * std::log10(fullScaleFactor * kFullScale) + static_cast<double>(floatValue(*text));
}

bool hasCalibrationValue(const ORNDeviceVolumeIOS* record, std::int32_t hz) {
  return calibrationText(record, hz).has_value();
}

bool hasCalibrationNumbers(const ORNDeviceVolumeIOS* record, const std::vector<std::string>& hzs) {
  return record && std::all_of(hzs.begin(), hzs.end(), [&](const std::string& hz) {
           const auto value = record->valueForKey("s" + std::to_string(intValue(hz)));
           return value.is_string() && startsWithNumber(value.get_ref<const std::string&>());
         });
}

}  // namespace orn
