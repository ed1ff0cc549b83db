// One redraw of a board, beside as many bare lines and texts and one image by the same painter; and a step of the
// moving mark on a large board, as the widget takes it, beside a repaint of that board.

#include <cstdlib>
#include <memory>
#include <vector>

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/ChessboardResultView.h>
#include <ORNHearingTestSDK/screens/ChessboardView.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

#include "benchmarks/Comparison.h"

namespace {

using namespace orn;
using namespace orn::bench;

const std::vector<std::string> kFrequencies{"500hz", "1000hz", "2000hz", "4000hz"};

/// A finished ear: crosses or circles, and the lines that join them.
std::unique_ptr<ChessboardView> testBoard(QSize size) {
  auto board = std::make_unique<ChessboardView>();
  board->resize(size);
  board->setHzs(kFrequencies);
  board->grab();
  for (const std::string& hz : kFrequencies) board->drawSelectAtHz(hz, "40db");
  board->drawTestEnd();
  return board;
}

QImage canvas(QSize size) { return QImage(size, QImage::Format_ARGB32_Premultiplied); }

/// One result of both ears, and its data source, which a board does not own.
struct ResultBoard {
  explicit ResultBoard(QSize size) {
    view.resize(size);
    view.setHzs(kFrequencies);
    data->countOfSection = [](auto&) { return 1; };
    data->pointAtHz = [](auto&, auto&, std::int32_t column, bool isLeft, auto) {
      return QPointF(column, column + (isLeft ? 5 : 7));
    };
    view.setDatasouce(data);
  }

  ChessboardResultView view;
  std::shared_ptr<ChessboardResultViewDataSouce> data = std::make_shared<ChessboardResultViewDataSouce>();
};

/// The parts of a board alone: so many lines and texts, and an image.
void drawBare(QPainter& painter, const QImage& watermark, int lines, int texts) {
  painter.drawImage(95, 253, watermark);
  for (int i = 0; i < lines; ++i) painter.drawLine(54, 55 + 20 * i, 321, 55 + 20 * i);
  for (int i = 0; i < texts; ++i) painter.drawText(QRectF(0, 20 * i, 47, 20), Qt::AlignRight, "120");
}

void compareRedraw(const std::string& name, ChessboardBase& board, int lines, int texts) {
  QImage image = canvas(board.size()), bareImage = canvas(board.size()), watermark = canvas({183, 160});
  watermark.fill(QColor(47, 183, 145, 33));
  QPainter painter(&image), barePainter(&bareImage);
  barePainter.setFont(ORNScreenUtils::systemFontOfSize(10));
  compare(often(name, [&] { board.drawRect(painter); }),
          often("its lines, texts and image alone", [&] { drawBare(barePainter, watermark, lines, texts); }));
}

void compareMovingTheMark() {
  const auto board = testBoard({1080, 2160});
  board->show();
  QApplication::processEvents();  // without this nothing is painted yet
  bool isUp = false;
  compare(often("moving the mark, 1080 x 2160",
                [&] {
                  board->drawTestAtHz("1000hz", (isUp = !isUp) ? "40db" : "50db");
                  QApplication::processEvents();
                }),
          often("a repaint of that board", [&] { board->repaint(); }));
}

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const QApplication application(argc, argv);
  const orn::SimulatedPlatform machine;
  orn::Platform::setCurrent(machine.platform());
  // 16 or 27 rows and 4 columns; for each threshold a cross, of two lines, or a circle; and three lines to join them.
  compareRedraw("board of a test", *testBoard({375, 667}), 20 + 4 + 3, 4 + 16 + 1);
  ResultBoard result({375, 667});
  compareRedraw("board of a result", result.view, 31 + 12 + 6, 4 + 14 + 1 + 2);
  compareMovingTheMark();
  orn::Platform::clearCurrent();
}
