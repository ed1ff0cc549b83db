#include <ORNHearingTestSDK/screens/BoardGrid.h>

#include <algorithm>
#include <cmath>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace orn {
namespace {

constexpr double kLineWidth = 0.5;

QPointF pixelAt(QPointF point) { return {std::floor(point.x() + 0.5), std::floor(point.y() + 0.5)}; }

}  // namespace

void drawGridLines(QPainter& painter, const std::vector<QLineF>& lines, const QColor& color) {
  const QTransform toPixels = painter.deviceTransform();
  const QTransform toPoints = toPixels.inverted();
  const double thickness = std::max(1.0, std::round(kLineWidth * toPixels.m11()));
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);  // one area, however many lines lie on it
  for (const QLineF& line : lines) {
    const QPointF from = pixelAt(toPixels.map(line.p1())), to = pixelAt(toPixels.map(line.p2()));
    const double width = line.dx() == 0 ? thickness : to.x() - from.x() + 1;
    const double height = line.dx() == 0 ? to.y() - from.y() + 1 : thickness;
    if (width > 0 && height > 0) path.addRect(toPoints.mapRect(QRectF(from, QSizeF(width, height))));
  }
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.fillPath(path, color);
  painter.restore();
}

}  // namespace orn
