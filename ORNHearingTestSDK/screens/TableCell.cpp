#include <ORNHearingTestSDK/screens/TableCell.h>

#include <utility>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/FingerScroller.h>

namespace orn {

TableCell::TableCell(QString reuseIdentifier) : reuseIdentifier_(std::move(reuseIdentifier)) {
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
}

void TableCell::setSelected(bool isSelected) {
  isSelected_ = isSelected;
  update();
}

void TableCell::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath ground;
  ground.addRoundedRect(rect(), cornerRadius_, cornerRadius_);
  painter.fillPath(ground, isDown() || isSelected_ ? kPressedColour : QColor(Qt::white));
  painter.fillRect(16, height() - 1, width() - 16, 1, kSeparatorColour);
  if (hasDisclosureMark_) paintDisclosureMark(painter);
  if (hasFocus()) drawFocusFrame(painter, rect(), qMax(cornerRadius_, 4));
}

void TableCell::paintDisclosureMark(QPainter& painter) const {
  const QPointF tip(width() - 8, height() / 2.0);
  painter.setPen(QPen(QColor(0xb5, 0xbb, 0xb8), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(QPolygonF{tip + QPointF(-5, -6), tip, tip + QPointF(-5, 6)});
}

void TableCell::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (!event->isAutoRepeat() && isUserInteractionEnabled_) click();
      return;
    case Qt::Key_Space:
      if (isUserInteractionEnabled_) QAbstractButton::keyPressEvent(event);
      return;
    default:
      event->ignore();  // the table moves from row to row
  }
}

void TableCell::mousePressEvent(QMouseEvent* event) {
  if (!isUserInteractionEnabled_) return;
  pressedAt_ = event->globalPosition();
  QAbstractButton::mousePressEvent(event);
}

/// A finger that moves is scrolling: its cell goes with it, so the button alone would take the end for a click.
void TableCell::mouseMoveEvent(QMouseEvent* event) {
  if (FingerScroller::isDrag(pressedAt_, event->globalPosition())) {
    setDown(false);
    event->ignore();
    return;
  }
  QAbstractButton::mouseMoveEvent(event);
}

}  // namespace orn
