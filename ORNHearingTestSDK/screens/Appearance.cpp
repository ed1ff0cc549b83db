#include <ORNHearingTestSDK/screens/Appearance.h>

#include <QtCore/QString>
#include <QtGui/QPainter>
#include <QtGui/QPen>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>

#include <ORNHearingTestSDK/screens/FingerScroller.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {
namespace {

constexpr int kScrollBarWidth = 8;

/// A scroll bar that lies over what it scrolls, which keeps the whole width.
class OverlaidScrollBarStyle : public QProxyStyle {
 public:
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    return metric == PM_ScrollView_ScrollBarOverlap ? kScrollBarWidth
                                                    : QProxyStyle::pixelMetric(metric, option, widget);
  }
};

}  // namespace

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

QString ownColours() {
  return QStringLiteral(
             "* { color: black; background-color: transparent; border: none; padding: 0; margin: 0; }"
             "#%1 { background-color: white; }")
      .arg(QLatin1String(kGroundName));
}

void makeTextButton(QPushButton* button) {
  button->setFlat(true);
  button->setAutoDefault(true);
  button->setCursor(Qt::PointingHandCursor);
  button->setStyleSheet(
      QStringLiteral("QPushButton { border: none; outline: none; padding: 0 6px; color: %1; background: transparent; }"
                     "QPushButton:pressed { background: %2; }"
                     "QPushButton:focus { border: 2px solid %3; border-radius: 6px; }")
          .arg(kAccentColour.name(), kPressedColour.name(), kFocusColour.name(QColor::HexArgb)));
}

void makePhoneScrolling(QAbstractScrollArea* area) {
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  QScrollBar* bar = area->verticalScrollBar();
  auto* style = new OverlaidScrollBarStyle;
  style->setParent(bar);
  bar->setStyle(style);
  bar->setStyleSheet(QStringLiteral("QScrollBar { background: transparent; width: %1px; }"
                                    "QScrollBar::handle { background: rgba(140, 150, 146, 160); border-radius: 3px; "
                                    "margin: 1px; min-height: 32px; }"
                                    "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
                                    "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }")
                         .arg(kScrollBarWidth));
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
