#include <ORNHearingTestSDK/screens/BoardMarks.h>

#include <algorithm>
#include <cmath>

#include <QtGui/QColor>
#include <QtGui/QPainter>
#include <QtGui/QPen>

namespace orn {
namespace {

/// Farther out than a stroke is wide, so that the ends that are made here are not seen.
constexpr double kBeyond = 10;

bool isFinite(QPointF point) { return std::isfinite(point.x()) && std::isfinite(point.y()); }

/// The part of a line within a rectangle (Liang and Barsky, 1984); painters mistake coordinates that are far out.
std::optional<QLineF> clipped(QPointF from, QPointF to, const QRectF& area) {
  double begin = 0, end = 1;
  const double dx = to.x() - from.x(), dy = to.y() - from.y();
  const double toEdges[4][2] = {{-dx, from.x() - area.left()},
                                {dx, area.right() - from.x()},
                                {-dy, from.y() - area.top()},
                                {dy, area.bottom() - from.y()}};
  for (const auto& [speed, distance] : toEdges) {
    if (speed == 0 && distance < 0) return std::nullopt;
    if (speed < 0) begin = std::max(begin, distance / speed);
    if (speed > 0) end = std::min(end, distance / speed);
  }
  if (!(begin <= end)) return std::nullopt;
  const auto at = [&](double part) { return QPointF(from.x() + part * dx, from.y() + part * dy); };
  return QLineF(begin > 0 ? at(begin) : from, end < 1 ? at(end) : to);
}

}  // namespace

bool BoardMarks::isSeen(QPointF center, double half) const {
  const double reach = half + 1;
  return isFinite(center) && view_.adjusted(-reach, -reach, reach, reach).contains(center);
}

void BoardMarks::addCross(QPointF center, double half) {
  if (!isSeen(center, half)) return;
  const QPointF falling(half, half), rising(half, -half);
  path_.moveTo(center - falling);
  path_.lineTo(center + falling);
  path_.moveTo(center + rising);
  path_.lineTo(center - rising);
}

void BoardMarks::addCircle(QPointF center, double half) {
  if (isSeen(center, half)) path_.addEllipse(center, half, half);
}

void BoardMarks::addLine(QPointF from, QPointF to) {
  if (!isFinite(from) || !isFinite(to)) return;
  const auto line = clipped(from, to, view_.adjusted(-kBeyond, -kBeyond, kBeyond, kBeyond));
  if (!line || !isFinite(line->p1()) || !isFinite(line->p2())) return;
  path_.moveTo(line->p1());
  path_.lineTo(line->p2());
}

void BoardMarks::strokeSmooth(QPainter& painter, const QColor& color) const { stroke(painter, color, true); }

void BoardMarks::strokeUnsmoothed(QPainter& painter, const QColor& color) const { stroke(painter, color, false); }

void BoardMarks::stroke(QPainter& painter, const QColor& color, bool isSmooth) const {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, isSmooth);
  const QPen pen(color, 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
  // A painter draws crossing lines of a path one over the other, which shows in a translucent colour. Only there is the
  // outline worth its time.
  if (isSmooth && color.alpha() < 255) {
    painter.fillPath(QPainterPathStroker(pen).createStroke(path_), color);
  } else {
    painter.strokePath(path_, pen);
  }
  painter.restore();
}

}  // namespace orn
