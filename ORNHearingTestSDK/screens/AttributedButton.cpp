#include <ORNHearingTestSDK/screens/AttributedButton.h>

#include <QtGui/QPainter>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/ReturnKey.h>

namespace orn {

AttributedButton::AttributedButton(const AttributedText& text, QWidget* parent) : QAbstractButton(parent), text_(text) {
  setAccessibleName(text.text().simplified());
}

void AttributedButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (isDown()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(kPressedColour);
    painter.drawRoundedRect(rect(), cornerRadius_, cornerRadius_);
  }
  const double height = text_.boundingSize(width()).height();
  text_.draw(painter, QRectF(0, (this->height() - height) / 2, width(), height), Qt::AlignHCenter);
  if (hasFocus()) drawFocusFrame(painter, rect(), cornerRadius_);
}

void AttributedButton::keyPressEvent(QKeyEvent* event) {
  if (!clickByReturnKey(*this, *event)) QAbstractButton::keyPressEvent(event);
}

}  // namespace orn
