#include <ORNHearingTestSDK/engine/ORNHearingTestItem.h>

#include <algorithm>

#include <ORNHearingTestSDK/audio/SampleFormat.h>
#include <ORNHearingTestSDK/audio/SineTables.h>
#include <ORNHearingTestSDK/audio/WaveScaling.h>
#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {

ORNHearingTestItem::~ORNHearingTestItem() { delete wavData_.load(); }

void ORNHearingTestItem::play() {
  if (player_) player_->play();
}

void ORNHearingTestItem::stop() {
  if (player_) player_->stop();
}

std::span<const std::uint8_t> ORNHearingTestItem::wavData() {
  const Bytes* cycle = wavData_.load(std::memory_order_acquire);
  if (!cycle) {
    const std::uint8_t* table = nullptr;
    std::int32_t length = 0;
    getDataPoint(table, length);
    if (!table) return {};
    auto fresh = std::make_unique<const Bytes>(getData(table, length));
    // Whoever comes first decides what the item keeps.
    if (wavData_.compare_exchange_strong(cycle, fresh.get(), std::memory_order_acq_rel)) cycle = fresh.release();
  }
  return *cycle;
}

void ORNHearingTestItem::getDataPoint(const std::uint8_t*& dataPoint, std::int32_t& length) const {
  if (const auto table = sineTable(intValue(hzValue_))) {
    dataPoint = table->data;
    length = table->size;
  }
}

Bytes ORNHearingTestItem::getDataFrom(float from, float to) const {
  Bytes block(kBlockBytes);
  if (!rampInto(block, from, to)) block.clear();
  return block;
}

bool ORNHearingTestItem::rampInto(std::span<std::uint8_t> block, float from, float to) const {
  const std::uint8_t* table = nullptr;
  std::int32_t length = 0;
  getDataPoint(table, length);
  if (!table) return false;
  rampCycles(table, length, kBlockBytes / length, from, std::max(to, 0.0F), block.data());
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
