#include <ORNHearingTestSDK/screens/ChessboardView.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "BoardPixels.h"

namespace orn {
namespace {

const float kStep = 394.0F / 15;  // between the rows of a board of 320 by 504

class ChessboardViewTest : public BoardTest {
 protected:
  ChessboardViewTest() {
    board.resize(320, 504);
    source->hzsOfChessboardView = [this](auto&) { return ++asked, kFour; };
    delegate->chessboardViewTouchedAtHz = [this](const auto& hz, const auto& db) { touched += hz + " " + db + " "; };
    board.setDatasource(source);
    board.setDelegate(delegate);
    draw(board);
  }

  int asked = 0;
  std::string touched;
  std::shared_ptr<ChessboardViewDataSource> source = std::make_shared<ChessboardViewDataSource>();
  std::shared_ptr<ChessboardViewDelegate> delegate = std::make_shared<ChessboardViewDelegate>();
  ChessboardView board;
};

TEST_F(ChessboardViewTest, GridLinesStandOnTheirRowsAndColumnsAtAnyRatio) {
  std::vector<int> rows;
  for (int i = 0; i < 16; ++i) rows.push_back(static_cast<int>(55 + kStep * static_cast<float>(i)));
  for (const int ratio : {1, 2}) {
    const QImage image = draw(board, ratio);
    const auto scaled = [&](std::vector<int> places) {
      for (int& place : places) place *= ratio;
      return places;
    };
    EXPECT_EQ(placesOf(image, Qt::black, false, 80 * ratio), scaled(rows));
    EXPECT_EQ(placesOf(image, Qt::black, true, 60 * ratio), scaled({55, 125, 195, 265}));
    const auto firstRow = placesOf(image, Qt::black, true, 55 * ratio);
    EXPECT_EQ(firstRow.front(), 54 * ratio);
    EXPECT_EQ(firstRow.back(), 266 * ratio);
    EXPECT_EQ(static_cast<int>(firstRow.size()), 212 * ratio + 1) << "a gap in the line";
    EXPECT_EQ(placesOf(image, Qt::black, false, 125 * ratio).back(), 450 * ratio);
  }
  EXPECT_EQ(asked, 1);
}

TEST_F(ChessboardViewTest, TextsStandWhereTheyBelong) {
  std::vector<Text> texts{{{12, 20, 47, kStep}, "dBHL", 10, Qt::AlignRight}};
  const QStringList names{"500", "1K", "2K", "4K Hz"};
  for (int j = 0; j < 4; ++j) texts.push_back({{20 + 70.0 * j, 464, 70, 50}, names[j], 12, Qt::AlignHCenter});
  for (int i = 0; i < 16; ++i) {
    const double y = 55 + kStep * static_cast<float>(i) - kStep / 2 + 4;
    texts.push_back({{0, y, 47, kStep}, QString::number(15 + 5 * i), 10, Qt::AlignRight});
  }
  for (const int ratio : {1, 2}) {
    const QImage image = draw(board, ratio), expected = paper(board.size(), texts, ratio);
    for (const QRect part : {QRect(0, 0, 53, 504), QRect(0, 0, 320, 53), QRect(0, 452, 320, 52)}) {
      const QRect pixels(part.topLeft() * ratio, part.size() * ratio);
      EXPECT_EQ(image.copy(pixels), expected.copy(pixels)) << "from " << part.x() << ", " << part.y();
    }
  }
}

TEST_F(ChessboardViewTest, EachEarHasItsMarks) {
  const double x = 125, y = 55 + 5.0 * kStep;
  for (const bool isLeft : {true, false}) {
    ChessboardView ear;
    ear.resize(320, 504);
    ear.setHzs(kFour);
    ear.setIsTestLeft(isLeft);
    draw(ear, 8);
    const auto expectMark = [&](QColor color, const char* when) {
      const QImage image = draw(ear, 8);
      const QColor diagonal = at(image, x + 3, y + 3), beside = at(image, x + 5, y + 2 * (isLeft ? 1 : 0));
      EXPECT_EQ(isLeft ? diagonal : beside, color) << when;
      EXPECT_NE(isLeft ? beside : diagonal, color) << when;
      EXPECT_NE(at(image, x + 6, y + 6), color) << when;
    };
    ear.drawTestAtHz("1000hz", "40db");
    expectMark(isLeft ? Qt::green : Qt::black, "sounding");
    ear.drawSelectAtHz("1000hz", "40db");
    expectMark(isLeft ? Qt::blue : Qt::red, "fixed");
    ear.drawSelectAtHz("1000hz", "60db");
    EXPECT_EQ(at(draw(ear, 8), x + (isLeft ? 3 : 5), y + (isLeft ? 3 : 0.5)), QColor(Qt::white)) << "overwritten";
  }
}

TEST_F(ChessboardViewTest, TheLineComesWithTheNextRedrawAfterTheEndAndTheMovingMarkGoes) {
  struct CountsPaints : QObject {
    int count = 0;
    bool eventFilter(QObject*, QEvent* event) override { return count += event->type() == QEvent::Paint, false; }
  } paints;
  for (const char* hz : {"1000hz", "2000hz", "4000hz"}) board.drawSelectAtHz(hz, "40db");
  board.drawTestAtHz("500hz", "20db");
  board.show();
  board.installEventFilter(&paints);
  QCoreApplication::processEvents();
  const QImage before = draw(board);
  EXPECT_EQ(at(before, 160, 186), QColor(Qt::black)) << "the grid's";
  const int painted = paints.count;
  board.drawTestEnd();
  QCoreApplication::processEvents();
  EXPECT_EQ(paints.count, painted);
  const QImage after = draw(board);
  EXPECT_EQ(at(after, 160, 186), QColor(Qt::red));
  const auto fromTheCorner = placesOf(after, Qt::red, false, 90);  // where the unset column has its place
  ASSERT_EQ(fromTheCorner.size(), 1U);
  EXPECT_NEAR(fromTheCorner[0], 144.7, 1);
  EXPECT_NE(at(before, 58, 77), QColor(Qt::white)) << "the rim of the moving mark";
  EXPECT_EQ(at(after, 58, 77), QColor(Qt::white));
}

TEST_F(ChessboardViewTest, TouchesSnapToTheNearestCell) {
  const double tie = 81 + kStep / 2;
  struct Row {
    QPointF touch;
    std::int64_t column, row;
    QPointF point;
  };
  const QPointF nowhere(-200, -200);
  for (const Row& row : std::vector<Row>{{{50, 50}, 0, 0, {55, 55}},
                                         {{49.9, 60}, -7, -7, nowhere},
                                         {{60, 49.9}, -7, -7, nowhere},
                                         {{270, 60}, -7, -7, nowhere},
                                         {{60, 454}, -7, -7, nowhere},
                                         {{269.9, 453.9}, 3, 15, {265, 449}},
                                         {{90, 55}, 0, 0, {55, 55}},
                                         {{90.1, 55}, 1, 0, {125, 55}},
                                         {{230, 448}, 2, 15, {195, 449}},
                                         {{231, tie}, 3, 1, {265, 81}},
                                         {{231, tie + 0.1}, 3, 2, {265, 107}}}) {
    std::int64_t column = -7, line = -7;
    EXPECT_EQ(board.adjustCurrentTouchPoint(row.touch, column, line), row.point);
    EXPECT_EQ(column, row.column) << row.touch.x() << ", " << row.touch.y();
    EXPECT_EQ(line, row.row) << row.touch.x() << ", " << row.touch.y();
  }
}

TEST_F(ChessboardViewTest, OnlyTheEndOfATouchByMouseOrFingerCounts) {
  const auto finger = std::unique_ptr<QPointingDevice>(QTest::createTouchDevice());
  const QPoint cell(120, 190), outside(30, 190);
  board.show();
  QTest::mousePress(&board, Qt::LeftButton, {}, outside);
  QTest::mouseMove(&board, cell);
  EXPECT_EQ(touched, "");
  QTest::mouseRelease(&board, Qt::LeftButton, {}, cell);
  EXPECT_EQ(touched, "1000hz 40db ");
  EXPECT_EQ(board.currentTestPoint(), QPointF(125, 186));
  QTest::mouseClick(&board, Qt::RightButton, {}, cell);
  QTest::mouseClick(&board, Qt::LeftButton, {}, outside);
  EXPECT_EQ(touched, "1000hz 40db ");
  QTest::touchEvent(&board, finger.get()).press(1, cell);
  QTest::touchEvent(&board, finger.get()).stationary(1).press(2, QPoint(60, 60));
  QTest::touchEvent(&board, finger.get()).stationary(1).release(2, QPoint(60, 60));
  EXPECT_EQ(touched, "1000hz 40db ");
  QTest::touchEvent(&board, finger.get()).release(1, QPoint(265, 449));
  EXPECT_EQ(touched, "1000hz 40db 4000hz 90db ");
  board.setEnabled(false);
  QTest::mouseClick(&board, Qt::LeftButton, {}, cell);
  QTest::touchEvent(&board, finger.get()).press(1, cell);
  QTest::touchEvent(&board, finger.get()).release(1, cell);
  EXPECT_EQ(touched, "1000hz 40db 4000hz 90db ");
}

TEST_F(ChessboardViewTest, ATouchMayCloseTheBoard) {
  auto closing = std::make_unique<ChessboardView>();
  closing->resize(320, 504);
  draw(*closing);
  delegate->chessboardViewTouchedAtHz = [&](auto&, auto&) { closing.reset(); };
  closing->setDelegate(delegate);
  QTest::mouseClick(closing.get(), Qt::LeftButton, {}, QPoint(120, 190));
  EXPECT_EQ(closing, nullptr);
}

TEST_F(ChessboardViewTest, LevelsRunAsTheRangeSays) {
  constexpr auto kMax = std::numeric_limits<std::int64_t>::max(), kMin = std::numeric_limits<std::int64_t>::min();
  struct Row {
    std::int64_t maxDB, minDB, rows;
    double rowOf40;
  };
  for (const Row& row : std::vector<Row>{{-1, -1, 16, 5}, {90, 20, 0, -10}, {-1, 20, 19, 8}, {45, -1, 6, 5}}) {
    board.setMaxDB(row.maxDB, row.minDB);
    EXPECT_EQ(board.kXAxisNumber(), row.rows);
    EXPECT_EQ(board.convert2Point("1000hz", "40db"), QPointF(1, row.rowOf40));
  }
  for (const Row& row : std::vector<Row>{{kMax, -1, 0, 0}, {kMin, -1, 0, 0}, {kMin, 0, 0, 0}, {20, -1, 1, 0}}) {
    board.setMaxDB(row.maxDB, row.minDB);
    board.drawSelectAtHz("1000hz", "40db");
    draw(board);
    QTest::mouseClick(&board, Qt::LeftButton, {}, QPoint(120, 190));
  }
  board.setMaxDB(-1, -1);
  draw(board);
  for (const auto& [db, row] : {std::pair("17db", 0.0), {"95db", 16.0}, {"10db", -1.0}, {"", -3.0}}) {
    EXPECT_EQ(board.convert2Point("1000hz", db).y(), row) << db;
  }
}

TEST_F(ChessboardViewTest, NonsenseIsLeftOut) {
  const QImage plain = draw(board);
  board.drawSelectAtHz("3000hz", "40db");
  EXPECT_EQ(draw(board), plain);
  board.drawTestAtHz("3000hz", "40db");
  EXPECT_EQ(draw(board), plain);
  board.drawTestEnd();
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  board.setPointsArray({{NAN, 100}, {100, kInfinite}, {1e300, -1e300}, {-kInfinite, 100}});
  EXPECT_EQ(draw(board), plain);

  ChessboardView lone;
  lone.resize(320, 504);
  lone.setHzs({"1000hz"});
  lone.drawSelectAtHz("1000hz", "40db");
  QImage image = draw(lone);
  EXPECT_EQ(placesOf(image, Qt::black, false, 80).size(), 16U) << "the rows are there";
  EXPECT_EQ(placesOf(image, Qt::red, false, 55), std::vector<int>());
  QTest::mouseClick(&lone, Qt::LeftButton, {}, QPoint(120, 190));
  lone.setHzs({});
  QTest::mouseClick(&lone, Qt::LeftButton, {}, QPoint(120, 190));
  for (const QSize size : {QSize(1, 1), QSize(100, 100), QSize(3000, 110)}) {
    board.resize(size);
    draw(board);
  }
}

TEST_F(ChessboardViewTest, TheWatermarkLiesUnderTheGridAndMayBeMissing) {
  const QImage image = draw(board);
  loseBundles();
  const QImage without = draw(board);
  QImage outside = image;  // of the rectangle that a board of 220 by 404 has it in
  const QPoint corner(86, 188);
  QPainter(&outside).drawImage(corner, without, QRect(corner, QSize(146, 128)));
  EXPECT_EQ(outside, without);
  EXPECT_NE(image, without);
  EXPECT_EQ(placesOf(image, Qt::black, true, 212), placesOf(without, Qt::black, true, 212));
  Platform::clearCurrent();
  EXPECT_EQ(draw(board), without);
}

}  // namespace
}  // namespace orn
