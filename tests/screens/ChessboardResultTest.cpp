#include <ORNHearingTestSDK/screens/ChessboardResultView.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BoardPixels.h"

namespace orn {
namespace {

/// A board on which rows are 16 points apart and, with four columns, columns 70 points.
class ChessboardResultViewTest : public BoardTest {
 protected:
  ChessboardResultViewTest() {
    board.resize(320, 526);
    board.setHzs(kFour);
    data->countOfSection = [this](auto&) { return sections; };
    data->pointAtHz = [](auto&, auto&, std::int32_t column, bool isLeft, std::int32_t section) {
      return QPointF(column, 3 * section + (isLeft ? 0.5 : 2));
    };
    board.setDatasouce(data);
  }

  std::int32_t sections = 1;
  std::shared_ptr<ChessboardResultViewDataSouce> data = std::make_shared<ChessboardResultViewDataSouce>();
  ChessboardResultView board;
};

TEST_F(ChessboardResultViewTest, GridIsOfOneGreyEverywhere) {
  sections = 0;
  const QImage image = draw(board);
  const QColor grey(102, 102, 102);
  std::vector<int> rows;
  for (int i = 0; i < 27; ++i) rows.push_back(55 + 16 * i);
  EXPECT_EQ(placesOf(image, grey, false, 80), rows);
  EXPECT_EQ(placesOf(image, grey, true, 60), (std::vector<int>{55, 125, 195, 265}));
  EXPECT_EQ(placesOf(image, grey, true, 55).size(), 213U) << "crossings are no darker";
}

TEST_F(ChessboardResultViewTest, TextsFollowTheWidth) {
  struct Size {
    QSize size;
    double font;
  };
  for (const auto& [size, f] : {Size{{320, 526}, 10}, Size{{375, 667}, 375.0F * 10 / 320}}) {
    board.resize(size);
    const double row = static_cast<float>(size.height() - 110) / 26,
                 column = static_cast<float>(size.width() - 110) / 3;
    const int quarter = (size.width() - 100) / 4;
    std::vector<Text> texts{
        {{12, 20, 47, row}, "dBHL", f, Qt::AlignRight},
        {{quarter + 50.0, 20, 1.0 * quarter, f + 1}, "X左耳", f, Qt::AlignLeft, Qt::blue, false},
        {{(size.width() - 100) * 3 / 4 + 50.0, 20, 1.0 * quarter, f + 1}, "O右耳", f, Qt::AlignLeft, Qt::red, false}};
    const QStringList names{"500", "1K", "2K", "4K Hz"};
    for (int j = 0; j < 4; ++j) {
      texts.push_back({{55 + column * j - column / 2, 60 + row * 26, column, 50}, names[j], f, Qt::AlignHCenter});
    }
    for (int r = 0; r <= 26; r += 2) {
      texts.push_back({{0, 55 + row * r - row / 2, 47, row}, QString::number(-10 + 5 * r), f, Qt::AlignRight});
    }
    const QImage image = draw(board, 2), expected = paper(size, texts, 2);
    const QRect sides[] = {{0, 0, 49 * 2, size.height() * 2},
                           {0, 0, size.width() * 2, 53 * 2},
                           {0, size.height() * 2 - 104, size.width() * 2, 104}};
    for (const QRect& part : sides) EXPECT_EQ(image.copy(part), expected.copy(part)) << size.width() << part.y();
  }
}

TEST_F(ChessboardResultViewTest, NoTextMeetsAnotherOrIsCutOffOnALargeBoard) {
  board.resize(1080, 2160);
  sections = 0;
  const QImage image = draw(board);
  const auto inked = [&](const QRect& part) {
    int first = -1, last = -1;
    for (int y = part.top(); y <= part.bottom(); ++y) {
      for (int x = part.left(); x <= part.right(); ++x) {
        if (image.pixelColor(x, y) == QColor(Qt::white)) continue;
        if (first < 0) first = y;
        last = y;
      }
    }
    return std::pair(first, last);
  };
  const auto unit = inked({0, 0, 53, 40}), top = inked({0, 41, 53, 60}), bottom = inked({0, 2080, 37, 40});
  EXPECT_GE(unit.first, 20);
  EXPECT_LT(unit.second, 40);
  EXPECT_GT(top.first, 41);
  EXPECT_TRUE(top.first < 55 && top.second > 55) << "the level stands at its row";
  EXPECT_LT(bottom.second, 2112) << "above the names of the columns";
  for (const int x : {0, 1079}) EXPECT_EQ(placesOf(image, Qt::white, false, x).size(), 2160U) << "cut off at " << x;
}

TEST_F(ChessboardResultViewTest, SectionsPaleEarByEar) {
  sections = 7;
  const QImage image = draw(board, 4);
  for (int s = 0; s < 7; ++s) {
    const int shade = std::max(0, 255 - 51 * s);
    const double left = 55 + 16 * (3 * s + 0.5), right = 55 + 16 * (3 * s + 2);
    EXPECT_EQ(at(image, 90, left), QColor(0, 0, shade)) << s;
    EXPECT_EQ(at(image, 195 + 2.5, left + 2.5), QColor(0, 0, shade)) << "cross " << s;
    EXPECT_EQ(at(image, 90, right), QColor(shade, 0, 0)) << s;
    EXPECT_EQ(at(image, 195, right - 4.25), QColor(shade, 0, 0)) << "circle " << s;
  }
}

TEST_F(ChessboardResultViewTest, LinesOfASmallBoardAreFaintButCirclesAreNot) {
  board.resize(160, 526);
  data->pointAtHz = [](auto&, auto&, std::int32_t column, bool isLeft, auto) {
    return QPointF(column, isLeft ? 20.5 : 2.5);
  };
  const QImage image = draw(board, 4);
  EXPECT_NEAR(at(image, 63, 95).green(), 128, 1);
  EXPECT_EQ(at(image, 63, 95).red(), 255);
  EXPECT_NEAR(at(image, 63, 383).red(), 128, 1);
  EXPECT_EQ(at(image, 55, 97), QColor(Qt::red));
}

TEST_F(ChessboardResultViewTest, PointsAreAskedForSectionBySectionAndEarByEar) {
  std::string asked;
  board.setHzs({"500", "1000 Hz"});
  sections = 2;
  data->pointAtHz = [&](auto&, const std::string& hz, std::int32_t index, bool isLeft, std::int32_t section) {
    asked += hz + std::to_string(index) + (isLeft ? "L" : "R") + std::to_string(section) + " ";
    return QPointF();
  };
  draw(board);
  EXPECT_EQ(asked, "500hz0L0 1000hz1L0 500hz0R0 1000hz1R0 500hz0L1 1000hz1L1 500hz0R1 1000hz1R1 ");
}

TEST_F(ChessboardResultViewTest, NonsenseIsLeftOut) {
  sections = 0;
  const QImage plain = draw(board);
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  for (const QPointF nonsense : {QPointF(NAN, 1), QPointF(1, kInfinite), QPointF(-kInfinite, NAN), QPointF(1e300, 1)}) {
    data->pointAtHz = [&](auto&, auto&, auto, bool, auto) { return nonsense; };
    sections = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(draw(board), plain);
  }
  sections = -1;
  EXPECT_EQ(draw(board), plain);
  data->countOfSection = nullptr;
  EXPECT_EQ(draw(board), plain);
  data.reset();
  EXPECT_EQ(draw(board), plain);
}

TEST_F(ChessboardResultViewTest, ALineToAPointFarOutLeavesTheViewInItsDirection) {
  data->pointAtHz = [](auto&, auto&, std::int32_t column, bool, auto) {
    return column == 1 ? QPointF(1, 1e12) : QPointF(column, 0.5);
  };
  const QImage image = draw(board, 4);
  EXPECT_EQ(at(image, 55, 300), QColor(Qt::red));
  EXPECT_EQ(at(image, 90, 300), at(image, 90, 310));
}

}  // namespace
}  // namespace orn
