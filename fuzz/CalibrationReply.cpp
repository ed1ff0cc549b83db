// A calibration reply of any bytes, and one of the right form whose values are any text: every level must come out as
// an amplitude.

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>
#include <ORNHearingTestSDK/calibration/LevelCipher.h>
#include <ORNHearingTestSDK/calibration/LevelMapping.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>

#include "fuzz/Expect.h"

namespace {

using namespace orn;

void readLevels(const ORNDeviceCorrect& reply) {
  const auto device = audiometerRecords(reply);
  const auto ears = earphoneRecords(reply);
  for (const std::int32_t hz : kToneFrequencies) {
    for (const std::int32_t db : {40, 90}) {
      const double amplitude =
          audiometerAmplitude(device.ab.get(), device.aabb.get(), device.xxyy.get(), db, std::to_string(hz) + "hz");
      fuzz::expect(amplitude >= 0 && amplitude <= 1, "an amplitude is from 0 to 1");
      const auto gain = earphoneGain(ears.left.get(), hz, db);
      fuzz::expect(!gain || (*gain > 0 && std::isfinite(*gain)), "a gain is positive and finite");
    }
  }
}

/// Three records, as many as have a role.
nlohmann::json formed(FuzzedDataProvider& data) {
  nlohmann::json records = nlohmann::json::array();
  while (data.remaining_bytes() > 0 && records.size() < 3) {
    nlohmann::json record{{"base", data.ConsumeBool()}, {"batch", data.ConsumeIntegral<std::int64_t>()}};
    record["ear"] = data.ConsumeIntegralInRange(0, 3);
    record["earplug_model"] = std::to_string(data.ConsumeIntegralInRange(0, 3));
    for (const std::int32_t hz : kToneFrequencies) {
      record["s" + std::to_string(hz)] = encipheredLevel(data.ConsumeRandomLengthString(24));
    }
    records.push_back(std::move(record));
  }
  return {{"rspCode", 0}, {"deviceVolumeIOS", std::move(records)}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const bool isFormed = size > 0 && bytes[0] == 'F';
  if (isFormed) data.ConsumeIntegral<std::uint8_t>();
  const auto reply = isFormed ? ORNDeviceCorrect::initWithDictionary(formed(data))
                              : ORNDeviceCorrect::parse(data.ConsumeRemainingBytesAsString());
  if (!reply->deviceVolumeIOS()) return 0;
  readLevels(*reply);
  // Its own dictionary is deciphered, so reading that gives another reply, but must not crash.
  readLevels(*ORNDeviceCorrect::initWithDictionary(reply->toDictionary()));
  return 0;
}
