#include <gtest/gtest.h>

#include <ORNHearingTestSDK/screens/ChessboardView.h>

namespace orn {
namespace {

TEST(ChessboardView, SnapsATouchToTheNearestCell) {
  ChessboardView board;
  board.resize(320, 504);
  board.setHzs({"500hz", "1000hz", "2000hz", "4000hz"});
  board.grab();
  std::int64_t column = -1, row = -1;
  EXPECT_EQ(board.adjustCurrentTouchPoint({90, 449}, column, row), QPointF(55, 449));
  EXPECT_EQ(column, 0);
  EXPECT_EQ(row, 15);
}

}  // namespace
}  // namespace orn
