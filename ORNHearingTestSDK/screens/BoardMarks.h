#pragma once

#include <QtCore/QLineF>
#include <QtCore/QRectF>
#include <QtGui/QPainterPath>

class QColor;
class QPainter;

namespace orn {

/// Marks and lines of one colour, which are stroked together, a point wide.
class BoardMarks {
 public:
  /// Marks and lines that don't reach into this rectangle are left out, and so is what is not finite.
  explicit BoardMarks(const QRectF& view) : view_(view) {}

  /// A mark for the left ear, and one for the right ear, from `-half` to `half` around a point.
  void addCross(QPointF center, double half);
  void addCircle(QPointF center, double half);
  void addLine(QPointF from, QPointF to);

  /// Where strokes overlap, the colour counts once.
  void strokeSmooth(QPainter& painter, const QColor& color) const;
  void strokeUnsmoothed(QPainter& painter, const QColor& color) const;

 private:
  bool isSeen(QPointF center, double half) const;
  void stroke(QPainter& painter, const QColor& color, bool isSmooth) const;

  QRectF view_;
  QPainterPath path_;
};

}  // namespace orn
