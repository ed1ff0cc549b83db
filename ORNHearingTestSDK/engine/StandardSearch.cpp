#include <ORNHearingTestSDK/engine/StandardSearch.h>

#include <algorithm>

namespace orn {

bool StandardSearch::isAccepted(const Presentations& level) {
  return level.heard > level.notHeard && level.heard + level.notHeard >= kLeastPresentations;
}

SearchMove StandardSearch::next(const Presentations& level, int row, int rows, bool isHeard) {
  if (isAccepted(level)) return SearchMove::settle(row);
  // At the bottom a level that was heard comes again.
  if (isHeard) return SearchMove::present(row >= 2 ? row - 2 : std::max(row - 1, 0));
  // The top of the scale is recorded without acceptance.
  return row + 1 < rows ? SearchMove::present(row + 1) : SearchMove::settle(row);
}

}  // namespace orn
