#include <ORNHearingTestSDK/screens/TextLabel.h>

#include <algorithm>

#include <QtGui/QPainter>

namespace orn {

TextLabel::TextLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void TextLabel::setAttributedText(const AttributedText& text, Qt::Alignment alignment) {
  text_ = text;
  alignment_ = alignment;
  // What a screen reader says, with the line breaks that it knows.
  setText(QString(text.text()).replace(QChar(QChar::LineSeparator), QLatin1Char('\n')));
  spread();
  update();
}

void TextLabel::setPlainText(const QString& text, const QFont& font, const QColor& color, Qt::Alignment alignment) {
  AttributedText attributed(text, 0, 0, font);
  attributed.addColor(color, 0, text.size());
  setAttributedText(attributed, alignment);
}

void TextLabel::setFrame(const QRectF& frame) {
  frame_ = frame;
  spread();
  update();
}

void TextLabel::setGround(const QColor& color, int cornerRadius) {
  ground_ = color;
  cornerRadius_ = cornerRadius;
  update();
}

void TextLabel::spread() {
  const double over = std::max((text_.boundingSize(frame_.width()).height() - frame_.height()) / 2, 0.0);
  setGeometry(frame_.adjusted(0, -over, 0, over).toAlignedRect());
}

void TextLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = frame_.translated(-pos());
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground_);
  painter.drawRoundedRect(frame, cornerRadius_, cornerRadius_);
  const double height = text_.boundingSize(frame.width()).height();
  text_.draw(painter, {frame.left(), frame.center().y() - height / 2, frame.width(), height}, alignment_);
}

}  // namespace orn
