#include <ORNHearingTestSDK/screens/AudiogramPicture.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QBuffer>
#include <QtGui/QImage>
#include <QtGui/QPageSize>
#include <QtGui/QPainter>
#include <QtGui/QPdfWriter>
#include <QtSvg/QSvgGenerator>

#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/engine/LevelScale.h>
#include <ORNHearingTestSDK/screens/AudiogramDrawing.h>
#include <ORNHearingTestSDK/screens/ChessboardResultView.h>

namespace orn {
namespace {

constexpr QSize kPictureSize(375, 667);
constexpr int kPixelsPerPoint = 2;
constexpr int kPointsPerInch = 72;

/// A threshold between two rows stands between them; nowhere without a result.
double thresholdRow(const EarResult& ear, const std::string& hz) {
  const auto found = ear.find(hz);
  const std::int32_t db = found == ear.end() ? -1 : intValue(found->second);
  if (db == -1) return std::numeric_limits<double>::quiet_NaN();
  return (db - kResultScale.lowest) / static_cast<double>(LevelScale::kStep);
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
    return QPointF(column, thresholdRow(isLeft ? left : right, hz));
  };
  return data;
}

void drawBitmap(QIODevice& file, const EarResult& left, const EarResult& right) {
  QImage picture(kPictureSize * kPixelsPerPoint, QImage::Format_RGB32);
  picture.setDevicePixelRatio(kPixelsPerPoint);
  {
    QPainter painter(&picture);
    drawAudiogram(painter, kPictureSize, left, right);
  }
  picture.save(&file, "PNG");
}

void drawSvg(QIODevice& file, const EarResult& left, const EarResult& right) {
  QSvgGenerator picture;
  picture.setOutputDevice(&file);
  picture.setSize(kPictureSize);
  picture.setViewBox(QRect({}, kPictureSize));
  picture.setResolution(kPointsPerInch);
  QPainter painter(&picture);
  drawAudiogram(painter, kPictureSize, left, right);
}

void drawPdf(QIODevice& file, const EarResult& left, const EarResult& right) {
  QPdfWriter picture(&file);
  picture.setPageSize(QPageSize(kPictureSize, QString(), QPageSize::ExactMatch));
  picture.setPageMargins({});
  picture.setResolution(kPointsPerInch);
  QPainter painter(&picture);
  drawAudiogram(painter, kPictureSize, left, right);
}

}  // namespace

void drawAudiogram(QPainter& painter, QSize size, const EarResult& left, const EarResult& right) {
  ChessboardResultView board;
  board.resize(size);
  const auto data = dataOf(left, right);
  board.setDatasouce(data);
  board.drawRect(painter);
}

QByteArray audiogramPicture(const EarResult& left, const EarResult& right, PictureFormat format) {
  QBuffer file;
  file.open(QIODevice::WriteOnly);
  switch (format) {
    case PictureFormat::Svg:
      drawSvg(file, left, right);
      break;
    case PictureFormat::Pdf:
      drawPdf(file, left, right);
      break;
    case PictureFormat::Png:
    default:
      drawBitmap(file, left, right);
  }
  return file.data();
}

}  // namespace orn
