#include <ORNHearingTestSDK/engine/HearingTestGrid.h>

#include <algorithm>
#include <utility>

namespace orn {

std::vector<std::string> withoutRepeats(const std::vector<std::string>& hzs) {
  std::vector<std::string> once;
  for (const std::string& hz : hzs) {
    if (std::find(once.begin(), once.end(), hz) == once.end()) once.push_back(hz);
  }
  return once;
}

HearingTestColumn makeColumn(const ColumnLayout& layout) {
  HearingTestColumn column;
  std::shared_ptr<ORNHearingTestItem> quieter;
  for (int row = 0; row < layout.scale.rows; ++row) {
    auto item = std::make_shared<ORNHearingTestItem>();
    item->setPoint({layout.x, static_cast<double>(row)});
    item->setHzValue(layout.hzValue);
    item->setDbValue(std::to_string(layout.scale.levelOf(row)) + "db");
    item->setPan(layout.pan);
    if (quieter) {
      item->setPrevItem(quieter);
      quieter->setNextItem(item);
    }
    quieter = column[row] = std::move(item);
  }
  return column;
}

HearingTestGrid makeGrid(const std::vector<std::string>& hzs, bool isLeft) {
  HearingTestGrid grid;
  for (std::size_t x = 0; x < hzs.size(); ++x) {
    grid[hzs[x]] = makeColumn({.x = static_cast<double>(x), .hzValue = hzs[x], .pan = isLeft ? -1.0F : 1.0F});
  }
  return grid;
}

HearingTestGrid& EarGrids::of(bool isLeft, const std::vector<std::string>& hzs) {
  auto& made = isLeft ? left_ : right_;
  if (!made) made = makeGrid(hzs, isLeft);
  return *made;
}

std::shared_ptr<ORNHearingTestItem> itemAt(const HearingTestGrid& grid, const std::string& hz, int row) {
  const auto column = grid.find(hz);
  if (column == grid.end()) return nullptr;
  const auto item = column->second.find(row);
  return item == column->second.end() ? nullptr : item->second;
}

std::vector<std::shared_ptr<ORNHearingTestItem>> columnOf(std::shared_ptr<ORNHearingTestItem> item) {
  while (const auto quieter = item->prevItem()) item = quieter;
  std::vector<std::shared_ptr<ORNHearingTestItem>> column;
  for (; item; item = item->nextItem()) column.push_back(item);
  return column;
}

int rowOf(const ORNHearingTestItem& item) {
  int row = 0;
  for (auto quieter = item.prevItem(); quieter; quieter = quieter->prevItem()) ++row;
  return row;
}

}  // namespace orn
