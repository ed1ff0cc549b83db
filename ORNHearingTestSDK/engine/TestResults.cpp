#include <ORNHearingTestSDK/engine/TestResults.h>

#include <algorithm>
#include <cstdlib>

namespace orn {
namespace {

/// The progress of an ear at a cell, whatever the number of frequencies; every other row adds a fixed amount.
double progressAt(GridPoint point, std::int32_t startY) {
  const double column = point.x / 7;
  if (static_cast<std::int32_t>(point.y) % 2 != startY % 2) return column + 0.1285714285714286;
  return column + std::abs(point.y - startY) * 0.0625 / 7;
}

}  // namespace

void TestResults::startEar(bool isLeft) {
  (isLeft ? left_ : right_).clear();
  progress_ = 0;
}

void TestResults::settle(const Item& item, bool isLeft) { add(item, isLeft ? left_ : right_); }

void TestResults::add(const Item& item, std::vector<Item>& items) {
  const auto sameColumn = [&](const Item& one) { return one->point().x == item->point().x; };
  if (const auto old = std::find_if(items.begin(), items.end(), sameColumn); old != items.end()) {
    *old = item;
    return;
  }
  items.push_back(item);
  std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a->point().x < b->point().x; });
}

EarResult TestResults::dictionary(bool isLeft) const {
  EarResult result;
  for (const Item& item : of(isLeft)) {
    const std::string& level = item->dbValue();
    result[item->hzValue()] = level.substr(0, level.size() < 2 ? 0 : level.size() - 2);
  }
  return result;
}

void TestResults::tonePresented(GridPoint point, std::int32_t startY) { raise(progressAt(point, startY)); }

void TestResults::thresholdTold(GridPoint point, std::size_t columns) {
  const auto all = static_cast<double>(columns);
  raise(point.x / all + 1 / all);
}

void TestResults::raise(double progress) { progress_ = std::max(progress_, static_cast<float>(progress)); }

}  // namespace orn
