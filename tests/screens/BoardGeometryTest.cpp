#include <ORNHearingTestSDK/screens/ChessboardResultView.h>
#include <ORNHearingTestSDK/screens/ChessboardView.h>

#include "BoardPixels.h"

namespace orn {
namespace {

struct Layout {
  int rows, every, firstDB;
  double lowered, below, levelFont, nameFont;
  QColor grid;
};

struct BoardGeometryTest : BoardTest {
  /// Lines and texts, every pixel of them, at two ratios; `writeLegend` adds the texts that only one board has.
  void expectLayout(ChessboardBase& board, QSize size, const Layout& layout, const auto& writeLegend) {
    board.resize(size);
    board.setHzs(kFour);
    const int width = size.width(), height = size.height();
    const float row = static_cast<float>(height - 110) / static_cast<float>(layout.rows - 1);
    const float column = static_cast<float>(width - 110) / 3;
    for (const int ratio : {1, 2}) {
      SCOPED_TRACE(testing::Message() << width << " by " << height << " at " << ratio);
      QImage expected = paper(size, ratio);
      std::vector<int> rows, columns;
      write(expected, {12, 20, 47, row}, "dBHL", layout.levelFont, Qt::AlignRight);
      for (const QString name : {"500", "1K", "2K", "4K Hz"}) {
        const double x = 55 + column * static_cast<float>(columns.size()), y = height - 55 + layout.below;
        columns.push_back(static_cast<int>(x) * ratio);
        write(expected, {x - column / 2, y, column, 50}, name, layout.nameFont, Qt::AlignHCenter);
      }
      for (int i = 0; i < layout.rows; ++i) {
        const double y = 55 + row * static_cast<float>(i);
        rows.push_back(static_cast<int>(y) * ratio);
        const QString level = i % layout.every ? QString() : QString::number(layout.firstDB + 5 * i);
        write(expected, {0, y - row / 2 + layout.lowered, 47, row}, level, layout.levelFont, Qt::AlignRight);
      }
      writeLegend(expected);
      const QImage image = draw(board, ratio);
      const auto firstRow = placesOf(image, layout.grid, true, 55 * ratio);
      EXPECT_EQ(placesOf(image.copy(0, 0, width, (height - 52) * ratio), layout.grid, false, 80 * ratio), rows);
      EXPECT_EQ(placesOf(image, layout.grid, true, 60 * ratio), columns);
      EXPECT_TRUE(firstRow.front() == 54 * ratio && firstRow.back() == (width - 54) * ratio);
      EXPECT_EQ(std::ssize(firstRow), (width - 108) * ratio + 1) << "one colour, also where lines cross";
      for (const QRect part : {QRect(0, 0, 53, height), QRect(0, 0, width, 53), QRect(0, height - 52, width, 52)}) {
        const QRect pixels(part.topLeft() * ratio, part.size() * ratio);
        EXPECT_EQ(image.copy(pixels), expected.copy(pixels)) << "texts from " << part.x() << ", " << part.y();
      }
    }
  }
};

TEST_F(BoardGeometryTest, LinesAndTextsStandWhereTheyBelong) {
  ChessboardView testBoard;
  ChessboardResultView resultBoard;
  for (const QSize size : {QSize(320, 504), QSize(375, 667)}) {
    expectLayout(testBoard, size, {16, 1, 15, 4, 15, 10, 12, Qt::black}, [](QImage&) {});
    const float font = static_cast<float>(size.width()) * 10 / 320;
    const int inner = size.width() - 100;
    expectLayout(resultBoard, size, {27, 2, -10, 0, 5, font, font, QColor(102, 102, 102)}, [&](QImage& expected) {
      write(expected, QRect(inner / 4 + 50, 20, 99, 9), "X左耳", font, Qt::AlignLeft, Qt::blue, false);
      write(expected, QRect(inner * 3 / 4 + 50, 20, 99, 9), "O右耳", font, Qt::AlignLeft, Qt::red, false);
    });
  }
}

TEST_F(BoardGeometryTest, NoTextMeetsAnotherOrIsCutOffOnALargeBoard) {
  ChessboardResultView board;
  board.resize(1080, 2160);
  const QImage image = draw(board);
  const auto blank = [&](int y) { return placesOf(image.copy(0, y, 53, 1), Qt::white, true, 0).size() == 53; };
  EXPECT_TRUE(blank(38) || blank(39) || blank(40) || blank(41)) << "between the unit and the highest level";
  EXPECT_FALSE(blank(53) && blank(55) && blank(57)) << "the level stands at its row";
  EXPECT_TRUE(blank(2109) || blank(2111) || blank(2113)) << "between the lowest level and the names";
  for (const int x : {0, 1079}) EXPECT_EQ(placesOf(image, Qt::white, false, x).size(), 2160U) << "cut off at " << x;
}

}  // namespace
}  // namespace orn
