#include <cmath>

#include <QtTest/QTest>

#include <ORNHearingTestSDK/screens/ChessboardView.h>

#include "BoardPixels.h"

namespace orn {
namespace {

const float kStep = 394.0F / 15;  // between the rows of a board of 320 by 504

struct ChessboardTest : BoardTest {
  ChessboardTest() {
    board.resize(320, 504);
    board.setHzs(kFour);
    delegate->chessboardViewTouchedAtHz = [this](auto& hz, auto& db) { touched += hz + " " + db + " "; };
    board.setDelegate(delegate);
    draw(board);
  }

  std::string touched;
  std::shared_ptr<ChessboardViewDelegate> delegate = std::make_shared<ChessboardViewDelegate>();
  ChessboardView board;
};

TEST_F(ChessboardTest, EachEarHasItsMarks) {
  const double x = 125, y = 55 + 5.0 * kStep;
  for (const bool isLeft : {true, false}) {
    board.setIsTestLeft(isLeft);
    const auto expectMark = [&](double row, QColor color) {
      const QImage image = draw(board, 8);
      EXPECT_EQ(at(image, x + 3, row + 3) == color, isLeft) << "a cross";
      EXPECT_EQ(at(image, x + 5, row + 0.5) == color, !isLeft) << "a circle";
      EXPECT_NE(at(image, x + 6, row + 6), color);
    };
    board.drawTestAtHz("1000hz", "40db");
    expectMark(y, isLeft ? Qt::green : Qt::black);
    board.drawSelectAtHz("1000hz", "40db");
    expectMark(y, isLeft ? Qt::blue : Qt::red);
    board.drawSelectAtHz("1000hz", "45db");
    expectMark(y + kStep, isLeft ? Qt::blue : Qt::red);
    EXPECT_EQ(at(draw(board, 8), x + (isLeft ? 3 : 5), y + (isLeft ? 3 : 0.5)), QColor(Qt::white)) << "overwritten";
  }
}

TEST_F(ChessboardTest, AtTheEndTheLineComesAndTheMovingMarkGoes) {
  for (const char* hz : {"1000hz", "2000hz", "4000hz"}) board.drawSelectAtHz(hz, "40db");
  board.drawTestAtHz("500hz", "20db");
  const QImage before = draw(board);
  board.drawTestEnd();
  const QImage after = draw(board);
  EXPECT_TRUE(at(before, 160, 186) == QColor(Qt::black) && at(after, 160, 186) == QColor(Qt::red));
  const auto fromTheCorner = placesOf(after, Qt::red, false, 90);  // where the unset column has its place
  ASSERT_EQ(fromTheCorner.size(), 1U);
  EXPECT_NEAR(fromTheCorner[0], 144.7, 1);
  EXPECT_NE(at(before, 58, 77), at(after, 58, 77)) << "the rim of the moving mark";
}

TEST_F(ChessboardTest, MarksKeepTheirLevelsWhateverTheSizeAndWhenNothingIsDrawnYet) {
  ChessboardView fresh;
  fresh.setHzs(kFour);
  fresh.resize(320, 504);
  fresh.drawSelectAtHz("2000hz", "60db");
  fresh.drawTestAtHz("1000hz", "40db");
  const QImage image = draw(fresh);
  fresh.resize(375, 667);
  EXPECT_NE(draw(fresh), image);
  EXPECT_NEAR(fresh.currentTestPoint().y(), 55 + 557 / 3.0, 1e-3);
  for (const QSize size : {QSize(110, 110), QSize(320, 504)}) {
    fresh.resize(size);
    draw(fresh);
  }
  EXPECT_EQ(draw(fresh), image);
  ChessboardView given;
  given.setHzs(kFour);
  given.setPointsArray({{125, 186}});
  given.resize(320, 504);
  draw(given);
  EXPECT_EQ(given.pointsArray()[0], QPointF(125, 186)) << "where its host has put it";
}

TEST_F(ChessboardTest, TouchesSnapToTheNearestCell) {
  const double tie = 81 + kStep / 2;
  const std::tuple<QPointF, int, int, QPointF> touches[] = {
      {{50, 50}, 0, 0, {55, 55}},         {{269.9, 453.9}, 3, 15, {265, 449}}, {{90, 55}, 0, 0, {55, 55}},
      {{90.1, 55}, 1, 0, {125, 55}},      {{231, tie}, 3, 1, {265, 81}},       {{231, tie + 0.1}, 3, 2, {265, 107}},
      {{49.9, 60}, -7, -7, {-200, -200}}, {{60, 49.9}, -7, -7, {-200, -200}},  {{270, 60}, -7, -7, {-200, -200}},
      {{60, 454}, -7, -7, {-200, -200}},  {{230, 448}, 2, 15, {195, 449}}};
  for (const auto& [touch, column, row, point] : touches) {
    std::int64_t foundColumn = -7, foundRow = -7;
    EXPECT_EQ(board.adjustCurrentTouchPoint(touch, foundColumn, foundRow), point);
    EXPECT_TRUE(foundColumn == column && foundRow == row) << touch.x() << ", " << touch.y();
  }
}

TEST_F(ChessboardTest, OnlyTheEndOfATouchByMouseOrFingerCounts) {
  const auto finger = std::unique_ptr<QPointingDevice>(QTest::createTouchDevice());
  const QPoint cell(120, 190), outside(30, 190);
  const auto touch = [&] { return QTest::touchEvent(&board, finger.get()); };
  board.show();
  QTest::mousePress(&board, Qt::LeftButton, {}, outside);
  EXPECT_EQ(touched, "");
  QTest::mouseRelease(&board, Qt::LeftButton, {}, cell);
  EXPECT_EQ(board.currentTestPoint(), QPointF(125, 186));
  QTest::mouseClick(&board, Qt::RightButton, {}, cell);
  touch().press(1, cell);
  touch().stationary(1).press(2, QPoint(60, 60));
  touch().stationary(1).release(2, QPoint(60, 60));
  EXPECT_EQ(touched, "1000hz 40db ");
  touch().release(1, QPoint(265, 449));
  board.setEnabled(false);
  touch().press(1, cell);
  touch().release(1, cell);
  board.setEnabled(true);
  QTest::mouseClick(&board, Qt::LeftButton, {}, QPoint(60, 60));
  EXPECT_EQ(touched, "1000hz 40db 4000hz 90db 500hz 15db ");

  auto closing = std::make_unique<ChessboardView>();
  closing->resize(320, 504);
  draw(*closing);
  delegate->chessboardViewTouchedAtHz = [&](auto&, auto&) { closing.reset(); };
  closing->setDelegate(delegate);
  QTest::mouseClick(closing.get(), Qt::LeftButton, {}, cell);
}

TEST_F(ChessboardTest, BadInputIsLeftOutAndHarmless) {
  const QImage plain = draw(board);
  board.drawSelectAtHz("3000hz", "40db");
  board.drawTestAtHz("3000hz", "40db");
  EXPECT_EQ(draw(board), plain);
  board.drawTestEnd();
  board.setPointsArray({{NAN, 100}, {100, HUGE_VAL}, {1e300, -1e300}, {-HUGE_VAL, 100}});
  EXPECT_EQ(draw(board), plain);
  const std::tuple<std::int64_t, std::int64_t, std::int64_t, double> ranges[] = {{INT64_MAX, -1, INT64_MAX / 5 - 3, 5},
                                                                                 {INT64_MIN, 0, 0, 0x1p63 / 5},
                                                                                 {90, 20, 0, -10},
                                                                                 {-1, 20, 19, 8},
                                                                                 {45, -1, 6, 5},
                                                                                 {20, -1, 1, 5},
                                                                                 {-1, -1, 16, 5}};
  for (const auto& [maxDB, minDB, rows, rowOf40] : ranges) {
    board.setMaxDB(maxDB, minDB);
    for (const std::vector<std::string>& hzs : {std::vector<std::string>{}, kFour, {"1000hz"}}) {
      board.setHzs(hzs);
      for (const QSize size : {QSize(1, 1), QSize(110, 110), QSize(320, 504)}) {
        board.resize(size);
        draw(board);
        QTest::mouseClick(&board, Qt::LeftButton, {}, board.rect().center());
      }
    }
    EXPECT_EQ(board.kXAxisNumber(), rows);
    EXPECT_EQ(board.convert2Point("1000hz", "40db"), QPointF(0, rowOf40));
  }
  EXPECT_EQ(placesOf(draw(board), Qt::black, false, 80).size(), 16U) << "the rows are there, in a single column too";
}

TEST_F(ChessboardTest, TheWatermarkLiesInItsRectangleUnderTheGridAndMayBeMissing) {
  QImage image = draw(board);
  Platform::clearCurrent();
  const QImage without = draw(board);
  EXPECT_NE(image, without);
  EXPECT_EQ(placesOf(image, Qt::black, true, 212), placesOf(without, Qt::black, true, 212)) << "the grid lies above";
  QPainter(&image).drawImage(QPoint(86, 188), without, QRect(86, 188, 146, 128));
  EXPECT_EQ(image, without);
}

}  // namespace
}  // namespace orn
