#include <ORNHearingTestSDK/engine/ToneStream.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace orn {
namespace {

constexpr std::array<std::uint8_t, kBlockBytes> WAV_NULL_DATA{};

/// What one block of a fade changes: a whole fade takes 2000 / F blocks, two at the least.
float fadeStep(const ORNHearingTestItem& item) {
  const std::int32_t hz = item.frequency();
  const std::int32_t blocks = hz > 0 ? std::max(2000 / hz, 2) : 2;
  return item.zhenfu() / static_cast<float>(blocks);
}

}  // namespace

ToneStream::ToneStream() = default;

void ToneStream::setCurrentItem(Item item) {
  const std::lock_guard lock(itemsMutex_);
  lastTestItem_ = std::exchange(currentItem_, std::move(item));
}

std::span<const std::uint8_t> ToneStream::nextBlock() {
  Item current, last;
  {
    const std::lock_guard lock(itemsMutex_);
    current = currentItem_;
    last = lastTestItem_;
  }
  if (current && current->needStop()) {
    const float from = current->adjustzhenfu();
    if (!(from > 0)) return WAV_NULL_DATA;
    const float to = from - fadeStep(*current);
    current->setAdjustzhenfu(std::max(to, 0.0F));
    return fade(*current, from, to);
  }
  if (current == last) return steady(current);
  if (last && last->adjustzhenfu() > 0) {
    const float from = last->adjustzhenfu();
    const float to = from - fadeStep(*last);
    // No floor here: the amplitude may end a little below 0, the samples never do.
    last->setAdjustzhenfu(to);
    return fade(*last, from, to);
  }
  if (current && current->adjustzhenfu() < current->zhenfu()) {
    const float from = current->adjustzhenfu();
    const float to = from + fadeStep(*current);
    current->setAdjustzhenfu(to);
    return fade(*current, from, to);
  }
  return steady(current);
}

ToneStream::Block ToneStream::fade(ORNHearingTestItem& item, float from, float to) {
  if (!item.rampInto(block_, from, to)) return WAV_NULL_DATA;
  steadyItem_.reset();
  return block_;
}

ToneStream::Block ToneStream::steady(const Item& item) {
  if (item && item == steadyItem_) return block_;
  const auto cycle = item ? item->wavData() : Block{};
  if (cycle.empty()) return WAV_NULL_DATA;
  // Every cycle divides the block.
  for (std::size_t at = 0; at < block_.size(); at += cycle.size()) {
    std::memcpy(block_.data() + at, cycle.data(), cycle.size());
  }
  steadyItem_ = item;
  return block_;
}

}  // namespace orn
