#include <ORNHearingTestSDK/screens/TextLabel.h>

#include <algorithm>
#include <cmath>

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

namespace orn {

TextLabel::TextLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void TextLabel::setAttributedText(const AttributedText& text, Qt::Alignment alignment) {
  line_.reset();
  // What a screen reader says, with the line breaks that it knows.
  showText(text, QString(text.text()).replace(QChar(QChar::LineSeparator), QLatin1Char('\n')), alignment);
}

void TextLabel::showText(const AttributedText& text, const QString& spoken, Qt::Alignment alignment) {
  text_ = text;
  alignment_ = alignment;
  setText(spoken);
  spread();
  update();
}

void TextLabel::setPlainText(const QString& text, const QFont& font, const QColor& color, Qt::Alignment alignment) {
  line_ = Line{text, font, color};
  showText({text, 0, 0, font}, text, alignment);
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
  textFrame_ = line_ ? fitLine() : frame_;
  const double over = std::max((text_.boundingSize(textFrame_.width()).height() - textFrame_.height()) / 2, 0.0);
  setGeometry(textFrame_.adjusted(0, -over, 0, over).toAlignedRect());
}

/// Makes the text of the part of the line that can be shown, and returns the frame for it.
QRectF TextLabel::fitLine() {
  const QFontMetricsF metrics(line_->font);
  const double least = frame_.width(), most = parentWidget() ? std::max<double>(parentWidget()->width(), least) : least;
  const double width = std::clamp(std::ceil(metrics.horizontalAdvance(line_->text)) + 2, least, most);
  const QString shown = metrics.elidedText(line_->text, Qt::ElideRight, width - 1);
  text_ = AttributedText(shown, 0, 0, line_->font);
  text_.addColor(line_->color, 0, shown.size());
  return frame_.adjusted((least - width) / 2, 0, (width - least) / 2, 0);
}

void TextLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = frame_.translated(-pos());
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground_);
  painter.drawRoundedRect(frame, cornerRadius_, cornerRadius_);
  const QRectF texts = textFrame_.translated(-pos());
  const double height = text_.boundingSize(texts.width()).height();
  text_.draw(painter, {texts.left(), texts.center().y() - height / 2, texts.width(), height}, alignment_);
}

}  // namespace orn
