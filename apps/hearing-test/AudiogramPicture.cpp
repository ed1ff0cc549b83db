#include "hearing-test/AudiogramPicture.h"

#include <cstdlib>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/ChessboardResultView.h>

namespace orn {
namespace {

constexpr QSize kSize(375, 667);
constexpr int kPixelsPerPoint = 2;

/// Row 0 stands for -10 dB and each row for 5 dB more; nowhere without a result.
double rowOf(const EarResult& ear, const std::string& hz) {
  const auto found = ear.find(hz);
  const std::int32_t db = found == ear.end() ? -1 : intValue(found->second);
  return db == -1 ? std::numeric_limits<double>::quiet_NaN() : (db + 10) / 5.0;
}

std::shared_ptr<ChessboardResultViewDataSouce> dataOf(const EarResult& left, const EarResult& right) {
  auto data = std::make_shared<ChessboardResultViewDataSouce>();
  data->countOfSection = [](auto&) { return 1; };
  data->hzsOfChessboardView = [both = left, right](auto&) mutable {
    both.insert(right.begin(), right.end());
    std::vector<std::string> hzs;
    for (const auto& [hz, db] : both) hzs.push_back(hz);
    return hzs;
  };
  data->pointAtHz = [left, right](auto&, const std::string& hz, std::int32_t column, bool isLeft, std::int32_t) {
    return QPointF(column, rowOf(isLeft ? left : right, hz));
  };
  return data;
}

}  // namespace

void writeAudiogramPicture(const std::string& path, const EarResult& left, const EarResult& right) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  // What Qt has to say about a session that isn't there is nothing for the program's own messages.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  char name[] = "hearing-test";
  char* arguments[] = {name, nullptr};
  int count = 1;
  const QApplication application(count, arguments);
  const SimulatedPlatform machine;
  Platform::setCurrent(machine.platform());
  QImage picture(kSize * kPixelsPerPoint, QImage::Format_RGB32);
  picture.setDevicePixelRatio(kPixelsPerPoint);
  {
    ChessboardResultView board;
    board.resize(kSize);
    const auto data = dataOf(left, right);
    board.setDatasouce(data);
    QPainter painter(&picture);
    board.drawRect(painter);
  }
  Platform::clearCurrent();
  if (!picture.save(QString::fromStdString(path), "PNG")) throw std::runtime_error("can't write " + path);
}

}  // namespace orn
