#include <ORNHearingTestSDK/engine/ORNHearingTestItem.h>

#include <algorithm>

#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveScaling.h>
#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn {

ORNHearingTestItem::~ORNHearingTestItem() { delete wavData_.load(); }

void ORNHearingTestItem::setHzValue(std::string hzValue) {
  hzValue_ = std::move(hzValue);
  frequency_ = intValue(hzValue_);
  table_ = sineTable(frequency_);
}

void ORNHearingTestItem::play() {
  if (player_) player_->play();
}

void ORNHearingTestItem::stop() {
  if (player_) player_->stop();
}

std::span<const std::uint8_t> ORNHearingTestItem::wavData() {
  const Bytes* cycle = wavData_.load(std::memory_order_acquire);
  if (!cycle) {
    if (!table_) return {};
    auto fresh = std::make_unique<const Bytes>(getData(table_->data, table_->size));
    // Whoever comes first decides what the item keeps.
    if (wavData_.compare_exchange_strong(cycle, fresh.get(), std::memory_order_acq_rel)) cycle = fresh.release();
  }
  return *cycle;
}

void ORNHearingTestItem::getDataPoint(const std::uint8_t*& dataPoint, std::int32_t& length) const {
  if (!table_) return;
  dataPoint = table_->data;
  length = table_->size;
}

Bytes ORNHearingTestItem::getDataFrom(float from, float to) const {
  if (!table_) return {};
  Bytes block(kBlockBytes);
  rampCycles(table_->data, table_->size, kBlockBytes / table_->size, from, std::max(to, 0.0F), block.data());
  return block;
}

bool ORNHearingTestItem::rampInto(std::span<std::uint8_t> block, float from, float to) const {
  if (!table_) return false;
  rampWithinFullScale(table_->data, table_->size, kBlockBytes / table_->size, from, std::max(to, 0.0F), block.data());
  return true;
}

Bytes ORNHearingTestItem::getData(const std::uint8_t* dataPoint, std::int64_t length) const {
  if (!dataPoint || length < 1) return {};
  Bytes cycle(static_cast<std::size_t>(length + length % 2));
  scaleCycle(dataPoint, length, zhenfu(), cycle.data());
  cycle.resize(static_cast<std::size_t>(length));
  return cycle;
}

}  // namespace orn
