#include <ORNHearingTestSDK/screens/BoardGrid.h>

#include <algorithm>
#include <cmath>

#include <QtGui/QPainter>
#include <QtGui/QRegion>

namespace orn {
namespace {

constexpr double kLineWidth = 0.5;

QPoint pixelAt(QPointF point) {
  return {static_cast<int>(std::floor(point.x() + 0.5)), static_cast<int>(std::floor(point.y() + 0.5))};
}

}  // namespace

void drawGridLines(QPainter& painter, const std::vector<QLineF>& lines, const QColor& color) {
  const QTransform toPixels = painter.deviceTransform();
  const QTransform toPoints = toPixels.inverted();
  const int thickness = std::max(1, static_cast<int>(std::round(kLineWidth * toPixels.m11())));
  QRegion pixels;
  for (const QLineF& line : lines) {
    const QPoint from = pixelAt(toPixels.map(line.p1())), to = pixelAt(toPixels.map(line.p2()));
    const int width = line.dx() == 0 ? thickness : to.x() - from.x() + 1;
    const int height = line.dx() == 0 ? to.y() - from.y() + 1 : thickness;
    pixels += QRect(from, QSize(width, height));
  }
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const QRect& rect : pixels) painter.fillRect(toPoints.mapRect(QRectF(rect)), color);
  painter.restore();
}

}  // namespace orn
