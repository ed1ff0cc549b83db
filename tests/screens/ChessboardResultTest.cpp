#include <cmath>

#include <ORNHearingTestSDK/screens/ChessboardResultView.h>

#include "BoardPixels.h"

namespace orn {
namespace {

/// A board whose rows are 16 points apart and whose four columns are 70 points apart.
struct ChessboardResultTest : BoardTest {
  ChessboardResultTest() {
    board.resize(320, 526);
    board.setHzs(kFour);
    data->countOfSection = [this](auto&) { return sections; };
    data->pointAtHz = [this](auto&, auto& hz, int column, bool isLeft, int section) {
      asked += hz + (isLeft ? "L" : "R") + std::to_string(section) + " ";
      return QPointF(column, 3 * section + (isLeft ? 0.5 : 2));
    };
    board.setDatasouce(data);
  }

  int sections = 1;
  std::string asked;
  std::shared_ptr<ChessboardResultViewDataSouce> data = std::make_shared<ChessboardResultViewDataSouce>();
  ChessboardResultView board;
};

TEST_F(ChessboardResultTest, SectionsComeInOrderAndPaleAndSmallBoardsAreFaint) {
  board.setHzs({"500", "1000 Hz"});
  sections = 2;
  draw(board);
  EXPECT_EQ(asked, "500hzL0 1000hzL0 500hzR0 1000hzR0 500hzL1 1000hzL1 500hzR1 1000hzR1 ");
  board.setHzs(kFour);
  sections = 7;
  QImage image = draw(board, 4);
  for (int s = 0; s < 7; ++s) {
    const int shade = std::max(0, 255 - 51 * s);
    const double left = 55 + 16 * (3 * s + 0.5), right = 55 + 16 * (3 * s + 2);
    EXPECT_EQ(at(image, 90, left), QColor(0, 0, shade)) << s;
    EXPECT_EQ(at(image, 195 + 2.5, left + 2.5), QColor(0, 0, shade)) << "cross " << s;
    EXPECT_EQ(at(image, 90, right), QColor(shade, 0, 0)) << s;
    EXPECT_EQ(at(image, 195, right - 4.25), QColor(shade, 0, 0)) << "circle " << s;
  }
  board.resize(160, 526);
  image = draw(board, 4);
  EXPECT_NEAR(at(image, 63, 63).red(), 128, 1);
  EXPECT_EQ(at(image, 55, 89), QColor(Qt::red)) << "circles are not faint";
}

TEST_F(ChessboardResultTest, LeftLinesAreSmoothAndRightOnesAreNot) {
  for (const bool isLeft : {true, false}) {
    data->pointAtHz = [=](auto&, auto&, int column, bool asksLeft, int) {
      return asksLeft == isLeft ? QPointF(column, column * 0.1 + 0.3) : QPointF(NAN, NAN);
    };
    const QImage image = draw(board);
    for (int x = 62; x < 118; x += 11) {
      EXPECT_EQ(placesOf(image, isLeft ? Qt::blue : Qt::red, false, x).size() == 1U, !isLeft) << "at full strength";
    }
  }
}

TEST_F(ChessboardResultTest, NonsenseIsLeftOutAndAPointFarOutGivesADirection) {
  sections = 0;
  const QImage plain = draw(board);
  QPointF point;
  data->pointAtHz = [&](auto&, auto&, int column, bool, int) { return column == 1 ? point : QPointF(NAN, 1); };
  for (const QPointF nonsense : {QPointF(1, HUGE_VAL), QPointF(1e300, 1), QPointF(-HUGE_VAL, NAN)}) {
    point = nonsense;
    sections = INT32_MAX;
    EXPECT_EQ(draw(board), plain) << point.x() << ", " << point.y();
  }
  sections = 1;
  data->pointAtHz = [](auto&, auto&, int column, bool, int) { return QPointF(column, column == 1 ? 1e12 : 0.5); };
  EXPECT_EQ(at(draw(board), 55, 300), QColor(Qt::red));
  data.reset();
  EXPECT_EQ(draw(board), plain);
}

}  // namespace
}  // namespace orn
