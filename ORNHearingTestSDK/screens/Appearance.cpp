#include <ORNHearingTestSDK/screens/Appearance.h>

#include <QtCore/QString>
#include <QtGui/QPainter>
#include <QtGui/QPen>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>

#include <ORNHearingTestSDK/screens/FingerScroller.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {

QFont systemFont(double size, QFont::Weight weight) {
  QFont font = ORNScreenUtils::systemFontOfSize(size);
  font.setWeight(weight);
  return font;
}

QPalette lightPalette() {
  QPalette palette(Qt::white);
  palette.setColor(QPalette::Window, Qt::white);
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::WindowText, Qt::black);
  palette.setColor(QPalette::Text, Qt::black);
  palette.setColor(QPalette::Highlight, kAccentColour);
  return palette;
}

void makeTextButton(QPushButton* button) {
  button->setFlat(true);
  button->setAutoDefault(true);
  button->setCursor(Qt::PointingHandCursor);
  button->setStyleSheet(
      QStringLiteral("QPushButton { border: none; padding: 0 6px; color: %1; background: transparent; }"
                     "QPushButton:pressed { background: %2; }"
                     "QPushButton:focus { border: 2px solid %3; border-radius: 6px; }")
          .arg(kAccentColour.name(), kPressedColour.name(), kFocusColour.name(QColor::HexArgb)));
}

void makePhoneScrolling(QAbstractScrollArea* area) {
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->verticalScrollBar()->setStyleSheet(
      QStringLiteral("QScrollBar { background: white; width: 8px; }"
                     "QScrollBar::handle { background: #c2c8c5; border-radius: 3px; margin: 1px; min-height: 32px; }"
                     "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"));
  new FingerScroller(area);
}

void drawFocusFrame(QPainter& painter, const QRectF& rect, double radius) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kFocusColour, 2));
  painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
  painter.restore();
}

}  // namespace orn
