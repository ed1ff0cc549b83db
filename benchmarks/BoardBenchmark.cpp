// One redraw of a board, against as many bare lines and texts and one image by the same painter, and a step of the
// moving mark on a large board, as the widget takes it.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/ChessboardResultView.h>
#include <ORNHearingTestSDK/screens/ChessboardView.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace {

using namespace orn;

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

void redraw(benchmark::State& state, ChessboardBase& board) {
  QImage image = canvas(board.size());
  QPainter painter(&image);
  for (auto _ : state) board.drawRect(painter);
}

void testBoardRedraw(benchmark::State& state) { redraw(state, *testBoard({375, 667})); }
BENCHMARK(testBoardRedraw)->Unit(benchmark::kMicrosecond);

void resultBoardRedraw(benchmark::State& state) {
  ChessboardResultView board;
  board.resize(375, 667);
  board.setHzs(kFrequencies);
  const auto data = std::make_shared<ChessboardResultViewDataSouce>();
  data->countOfSection = [](auto&) { return 1; };
  data->pointAtHz = [](auto&, auto&, std::int32_t column, bool isLeft, auto) {
    return QPointF(column, column + (isLeft ? 5 : 7));
  };
  board.setDatasouce(data);
  redraw(state, board);
}
BENCHMARK(resultBoardRedraw)->Unit(benchmark::kMicrosecond);

/// What a board is made of, and nothing more: `lines` lines, `texts` texts, an image.
void bareDrawing(benchmark::State& state, int lines, int texts) {
  QImage image = canvas({375, 667});
  QImage watermark = canvas({183, 160});
  watermark.fill(QColor(47, 183, 145, 33));
  QPainter painter(&image);
  painter.setFont(ORNScreenUtils::systemFontOfSize(10));
  for (auto _ : state) {
    painter.drawImage(95, 253, watermark);
    for (int i = 0; i < lines; ++i) painter.drawLine(54, 55 + 20 * i, 321, 55 + 20 * i);
    for (int i = 0; i < texts; ++i) painter.drawText(QRectF(0, 20 * i, 47, 20), Qt::AlignRight, "120");
  }
}
// 16 or 27 rows and 4 columns, and two lines a cross or one circle a threshold, with three to join them.
BENCHMARK_CAPTURE(bareDrawing, asOnATestBoard, 20 + 4 + 3, 4 + 16 + 1)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(bareDrawing, asOnAResultBoard, 31 + 12 + 6, 4 + 14 + 1 + 2)->Unit(benchmark::kMicrosecond);

void movingTheMark(benchmark::State& state) {
  ChessboardView board;
  board.resize(1080, 2160);
  board.setHzs(kFrequencies);
  board.show();
  bool isUp = false;
  for (auto _ : state) {
    board.drawTestAtHz("1000hz", (isUp = !isUp) ? "40db" : "50db");
    QApplication::processEvents();
  }
}
BENCHMARK(movingTheMark)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const QApplication application(argc, argv);
  const orn::SimulatedPlatform machine;
  orn::Platform::setCurrent(machine.platform());
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  orn::Platform::clearCurrent();
}
