#include <ORNHearingTestSDK/engine/AutomaticSearch.h>

#include <cstddef>

namespace orn {
namespace {

/// A column's answers with what lies beyond its ends.
struct Column {
  std::span<const Answer> answers;

  bool has(int row) const { return row >= 0 && static_cast<std::size_t>(row) < answers.size(); }
  bool is(int row, Answer answer) const { return has(row) && answers[static_cast<std::size_t>(row)] == answer; }
};

SearchMove afterHeard(const Column& column, int row) {
  const int quieter = row - 1, twoQuieter = row - 2, louder = row + 1;
  if (!column.has(quieter)) return SearchMove::settle(row);
  if (column.is(quieter, Answer::NotHeard) && column.is(louder, Answer::Heard)) return SearchMove::settle(row);
  return SearchMove::present(column.is(twoQuieter, Answer::NotJudged) ? twoQuieter : quieter);
}

SearchMove afterNotHeard(const Column& column, int row) {
  const int louder = row + 1, twoLouder = row + 2;
  if (!column.has(louder)) return SearchMove::settle(row);  // the top is recorded, though it was not heard
  if (column.is(louder, Answer::Heard)) return SearchMove::settle(louder);
  return SearchMove::present(column.is(twoLouder, Answer::NotJudged) ? twoLouder : louder);
}

}  // namespace

SearchMove AutomaticSearch::next(std::span<const Answer> answers, int row, bool isHeard) {
  const Column column{answers};
  return isHeard ? afterHeard(column, row) : afterNotHeard(column, row);
}

}  // namespace orn
