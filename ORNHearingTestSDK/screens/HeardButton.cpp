#include <ORNHearingTestSDK/screens/HeardButton.h>

#include <QtGui/QImage>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPointingDevice>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/ReturnKey.h>

namespace orn {
namespace {

/// The touch shows as a glow, whatever the pressed button's image is.
void drawGlow(QPainter& painter, const QRectF& rect) {
  QRadialGradient glow(rect.center(), rect.width() / 2);
  glow.setColorAt(0, QColor(255, 255, 255, 110));
  glow.setColorAt(1, QColor(255, 255, 255, 0));
  painter.setPen(Qt::NoPen);
  painter.setBrush(glow);
  painter.drawEllipse(rect);
}

}  // namespace

HeardButton::HeardButton(QWidget* parent) : QAbstractButton(parent) {
  setAccessibleName(QStringLiteral("听到了"));
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setAttribute(Qt::WA_AcceptTouchEvents);
  resize(kSize, kSize);
}

void HeardButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  const QImage image = ORNScreenUtils::imageResource(isDown() ? "hearing_roger_bg_pressed" : "hearing_roger_bg_default",
                                                     devicePixelRatioF());
  if (image.isNull()) {  // the button must be visible all the same
    painter.setPen(Qt::NoPen);
    painter.setBrush(kAccentColour);
    painter.drawEllipse(rect());
    painter.setPen(Qt::white);
    painter.setFont(systemFont(26));
    painter.drawText(rect(), Qt::AlignCenter, accessibleName());
  } else {
    painter.drawImage(rect(), image);
  }
  if (isDown()) drawGlow(painter, rect());
  if (hasFocus()) drawFocusFrame(painter, rect(), kSize / 2.0);
}

bool HeardButton::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      touched(*static_cast<QTouchEvent*>(event));
      return true;
    default:
      return QAbstractButton::event(event);
  }
}

void HeardButton::touched(const QTouchEvent& event) {
  const QPointF position = event.points().isEmpty() ? QPointF(-1, -1) : event.points().first().position();
  if (event.type() == QEvent::TouchUpdate) follow(position);
  const bool isClick = event.type() == QEvent::TouchEnd && isDown() && hitButton(position.toPoint());
  const bool goesOn = event.type() == QEvent::TouchBegin || event.type() == QEvent::TouchUpdate;
  setDown(goesOn && hitButton(position.toPoint()));
  if (isClick) click();
}

void HeardButton::follow(QPointF position) {
  if (isDown() && hitButton(position.toPoint()) && onDrag) onDrag(mapToParent(position.toPoint()));
}

void HeardButton::mouseMoveEvent(QMouseEvent* event) {
  follow(event->position());
  QAbstractButton::mouseMoveEvent(event);
}

void HeardButton::keyPressEvent(QKeyEvent* event) {
  if (!clickByReturnKey(*this, *event)) QAbstractButton::keyPressEvent(event);
}

}  // namespace orn
