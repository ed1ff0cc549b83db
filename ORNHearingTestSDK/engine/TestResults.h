#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <ORNHearingTestSDK/common/EarResult.h>
#include <ORNHearingTestSDK/engine/ORNHearingTestItem.h>

namespace orn {

/// What a session has found: the settled thresholds of both ears, and how far the ear under test has come. Main thread.
class TestResults {
 public:
  using Item = std::shared_ptr<ORNHearingTestItem>;  ///< A cell of the grid.

  /// Settled thresholds of an ear, at most one for each column, by column.
  const std::vector<Item>& of(bool isLeft) const { return isLeft ? left_ : right_; }

  /// The ear begins anew; what the other one has found stays.
  void startEar(bool isLeft);

  void settle(const Item& item, bool isLeft);  ///< Makes an item the threshold of its column.

  /// Whether an ear has a threshold for each column.
  bool isComplete(bool isLeft, std::size_t columns) const { return of(isLeft).size() == columns; }

  /// The thresholds in dB HL by frequency key; of two with the same key the later column's.
  EarResult dictionary(bool isLeft) const;

  /// 0 to 1, above 1 while the standard test looks at 1000 Hz again. It never goes down within an ear.
  float progress() const { return progress_; }
  void tonePresented(GridPoint point, std::int32_t startY);  ///< A tone plays: the progress rises.
  void thresholdTold(GridPoint point, std::size_t columns);  ///< A threshold was told: the progress rises.
  void finish() { progress_ = 1; }                           ///< The progress is 1.

  /// Puts an item in the place of the one with the same column, or in its own by column.
  static void add(const Item& item, std::vector<Item>& items);

 private:
  void raise(double progress);

  std::vector<Item> left_, right_;
  float progress_ = 0;
};

}  // namespace orn
