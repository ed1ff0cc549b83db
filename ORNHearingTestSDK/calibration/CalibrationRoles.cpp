#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>

#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/JsonReading.h>

namespace orn {
namespace {

template <typename Assign>
void forEachRecord(const ORNDeviceCorrect& reply, Assign assign) {
  if (!reply.deviceVolumeIOS()) return;
  for (const auto& record : *reply.deviceVolumeIOS()) {
    if (record) assign(record);
  }
}

}  // namespace

AudiometerRecords audiometerRecords(const ORNDeviceCorrect& reply) {
  AudiometerRecords records;
  forEachRecord(reply, [&](const std::shared_ptr<ORNDeviceVolumeIOS>& record) {
    if (!record->base()) records.ab = record;
    if (record->base() && record->earplugModel() == "2") records.aabb = record;
    if (record->base() && record->earplugModel() == "1") records.xxyy = record;
  });
  return records;
}

EarphoneRecords earphoneRecords(const ORNDeviceCorrect& reply) {
  EarphoneRecords records;
  forEachRecord(reply, [&](const std::shared_ptr<ORNDeviceVolumeIOS>& record) {
    const auto ear = jsonInteger(record->ear());
    if (ear == 1) records.left = record;
    if (ear == 2) records.right = record;
  });
  return records;
}

}  // namespace orn
