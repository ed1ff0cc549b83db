#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>

#include <ORNHearingTestSDK/engine/ORNHearingTestItem.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>

namespace orn {

/// The sample stream of the audiometer path: it brings each tone in and out by a fade that is a number of blocks, the
/// old tone wholly out before the new one comes in. It has no time of its own.
class ToneStream {
 public:
  using Item = std::shared_ptr<ORNHearingTestItem>;  ///< A cell of the grid.

  ToneStream();

  /// Makes an item current; the one that was current before, the same perhaps, becomes the last. Main thread.
  void setCurrentItem(Item item);
  const Item& currentItem() const { return currentItem_; }    ///< What the stream plays or fades to.
  const Item& lastTestItem() const { return lastTestItem_; }  ///< What it fades from.

  /// The next block of exactly kBlockBytes, valid until the next call. One thread at a time, the audio thread mostly.
  std::span<const std::uint8_t> nextBlock();

 private:
  using Block = std::span<const std::uint8_t>;

  Block fade(ORNHearingTestItem& item, float from, float to);
  Block steady(const Item& item);

  // Held for a copy of two pointers and nothing else. Only the main thread writes, and reads without it.
  std::mutex itemsMutex_;
  Item currentItem_;
  Item lastTestItem_;

  std::array<std::uint8_t, kBlockBytes> block_{};
  Item steadyItem_;  // whose cycles the block holds
};

}  // namespace orn
