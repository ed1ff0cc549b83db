#include <ORNHearingTestSDK/screens/HeardButton.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/ReturnKey.h>

namespace orn {

HeardButton::HeardButton(QWidget* parent) : QAbstractButton(parent) {
  setAccessibleName(QStringLiteral("听到了"));
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  resize(kSize, kSize);
}

void HeardButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  const QImage image = ORNScreenUtils::imageResource(isDown() ? "hearing_roger_bg_pressed" : "hearing_roger_bg_default",
                                                     devicePixelRatioF());
  if (image.isNull()) {  // the button must be found all the same
    painter.setPen(Qt::NoPen);
    painter.setBrush(kAccentColour);
    painter.drawEllipse(rect());
    painter.setPen(Qt::white);
    painter.setFont(systemFont(26));
    painter.drawText(rect(), Qt::AlignCenter, accessibleName());
  } else {
    painter.drawImage(rect(), image);
  }
  if (hasFocus()) drawFocusFrame(painter, rect(), kSize / 2.0);
}

void HeardButton::mouseMoveEvent(QMouseEvent* event) {
  if (isDown() && hitButton(event->position().toPoint()) && onDrag) onDrag(mapToParent(event->position().toPoint()));
  QAbstractButton::mouseMoveEvent(event);
}

void HeardButton::keyPressEvent(QKeyEvent* event) {
  if (!clickByReturnKey(*this, *event)) QAbstractButton::keyPressEvent(event);
}

}  // namespace orn
