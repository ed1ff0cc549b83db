#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/engine/LevelScale.h>
#include <ORNHearingTestSDK/engine/ORNHearingTestItem.h>

namespace orn {

/// The keys, each of them once: with a key that stands in the list twice, a search would never reach the next column.
std::vector<std::string> withoutRepeats(const std::vector<std::string>& hzs);

/// Items of one frequency by row; row 0 is the quietest.
using HearingTestColumn = std::map<int, std::shared_ptr<ORNHearingTestItem>>;

/// Columns of one ear by frequency key.
using HearingTestGrid = std::map<std::string, HearingTestColumn>;

/// What the items of a column have in common.
struct ColumnLayout {
  double x = 0;                   ///< Column, from 0.
  std::string hzValue;            ///< Its frequency key.
  float pan = 0;                  ///< Stereo position of its tones, -1 to 1.
  LevelScale scale = kGridScale;  ///< The levels of its rows.
};

/// A column of fresh items, each linked to its neighbours.
HearingTestColumn makeColumn(const ColumnLayout& layout);

/// One ear's grid: a column of kGridScale for each frequency key, in their order.
HearingTestGrid makeGrid(const std::vector<std::string>& hzs, bool isLeft);

/// The grids of a session's ears. Each is made of the keys at its first read and never again: the items remember what
/// they went through.
class EarGrids {
 public:
  HearingTestGrid& of(bool isLeft, const std::vector<std::string>& hzs);  ///< That of an ear.

 private:
  std::optional<HearingTestGrid> left_, right_;
};

/// The item of a key's column at a row, or null.
std::shared_ptr<ORNHearingTestItem> itemAt(const HearingTestGrid& grid, const std::string& hz, int row);

/// The items of the column that an item stands in, the quietest first.
std::vector<std::shared_ptr<ORNHearingTestItem>> columnOf(std::shared_ptr<ORNHearingTestItem> item);

/// An item's place in the column that it stands in, whatever its point says.
int rowOf(const ORNHearingTestItem& item);

}  // namespace orn
