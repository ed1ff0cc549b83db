#include <ORNHearingTestSDK/screens/AttributedText.h>

#include <algorithm>
#include <utility>

#include <QtGui/QPainter>
#include <QtGui/QTextLayout>

namespace orn {
namespace {

/// Breaks the text into lines, also within a word too long for one, and returns the size that they take.
QSizeF breakLines(QTextLayout& layout, double width, double lineSpace, double left = 0) {
  QSizeF size(0, 0);
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLeadingIncluded(true);
    line.setLineWidth(width);
    const double top = line.lineNumber() == 0 ? 0 : size.height() + lineSpace;
    line.setPosition({left, top});
    size = {std::max(size.width(), line.naturalTextWidth()), top + line.height()};
  }
  layout.endLayout();
  return size;
}

/// Whether the last line has a single character, a mark behind it aside, that was not put there by the text's own
/// break.
bool endsInOneCharacter(const QTextLayout& layout) {
  if (layout.lineCount() < 2) return false;
  const QTextLine last = layout.lineAt(layout.lineCount() - 1);
  const QString text = layout.text().mid(last.textStart(), last.textLength());
  return layout.text().at(last.textStart() - 1) != QChar::LineSeparator &&
         std::count_if(text.begin(), text.end(), [](QChar one) { return one.isLetterOrNumber(); }) < 2;
}

/// As breakLines(); lines that are a character shorter, where the last one would have one alone and that needs no more.
QSizeF layOut(QTextLayout& layout, double width, double lineSpace, Qt::Alignment alignment = {}) {
  QTextOption option(alignment);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  const QSizeF size = breakLines(layout, width, lineSpace);
  if (!endsInOneCharacter(layout)) return size;
  const int lines = layout.lineCount();
  const QTextLine last = layout.lineAt(lines - 1);
  const double spare = last.naturalTextWidth() / last.textLength();
  const QSizeF even = breakLines(layout, width - spare, lineSpace, alignment & Qt::AlignHCenter ? spare / 2 : 0);
  return layout.lineCount() == lines ? even : breakLines(layout, width, lineSpace);
}

}  // namespace

AttributedText::AttributedText(QString text, double lineSpace, double kern, const QFont& font)
    : text_(std::move(text)), lineSpace_(lineSpace), font_(font) {
  text_.replace(QLatin1Char('\n'), QChar::LineSeparator);
  if (kern != 0) font_.setLetterSpacing(QFont::AbsoluteSpacing, kern);
}

void AttributedText::addColor(const QColor& color, qsizetype from, qsizetype length) {
  parts_.push_back({color, from, length});
}

QSizeF AttributedText::boundingSize(double width) const {
  if (text_.isEmpty()) return {0, 0};
  QTextLayout layout(text_, font_);
  return layOut(layout, width, lineSpace_);
}

void AttributedText::draw(QPainter& painter, const QRectF& rect, Qt::Alignment alignment) const {
  QTextLayout layout(text_, font_, painter.device());
  QList<QTextLayout::FormatRange> ranges;
  for (const ColoredPart& part : parts_) {
    QTextCharFormat format;
    format.setForeground(part.color);
    ranges.append({static_cast<int>(part.from), static_cast<int>(part.length), format});
  }
  layout.setFormats(ranges);
  layOut(layout, rect.width(), lineSpace_, alignment);
  painter.save();
  painter.setPen(Qt::black);
  layout.draw(&painter, rect.topLeft());
  painter.restore();
}

}  // namespace orn
