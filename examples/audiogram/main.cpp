// Draws the audiogram of two ears into a PNG file: audiogram FILE. Works without a display.

#include <cstdlib>
#include <memory>
#include <string>

#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/ChessboardResultView.h>

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  const QApplication application(argc, argv);
  if (argc != 2) return 2;
  const orn::SimulatedPlatform machine;
  orn::Platform::setCurrent(machine.platform());

  const auto thresholds = std::make_shared<orn::ChessboardResultViewDataSouce>();
  thresholds->countOfSection = [](auto&) { return 1; };
  thresholds->pointAtHz = [](auto&, const std::string&, std::int32_t column, bool isLeft, std::int32_t) {
    const double db = isLeft ? 20 + 5 * column : 15 + 3 * column;
    return QPointF(column, (db + 10) / 5);
  };
  bool isWritten = false;
  {
    orn::ChessboardResultView board;
    board.resize(375, 667);
    board.setDatasouce(thresholds);
    isWritten = board.grab().save(QString::fromLocal8Bit(argv[1]), "PNG");
  }
  orn::Platform::clearCurrent();
  return isWritten ? 0 : 1;
}
