#include <ORNHearingTestSDK/screens/BoardLabels.h>

#include <algorithm>
#include <cmath>

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {
namespace {

constexpr int kFlags = Qt::AlignTop | Qt::TextWordWrap | Qt::TextDontClip;

bool isPlaced(const BoardLabel& label) {
  return std::isfinite(label.x) && std::isfinite(label.y) && std::isfinite(label.width) && label.width > 0;
}

QFontMetricsF metrics(const QPainter& painter, double size) {
  return QFontMetricsF(ORNScreenUtils::systemFontOfSize(size), painter.device());
}

}  // namespace

double fittingSize(const QPainter& painter, const std::vector<BoardLabel>& labels, double wantedSize) {
  double fit = 1;
  for (const BoardLabel& label : labels) {
    // No letter is wider than the font is high, so that most texts need no measuring.
    if (!isPlaced(label) || static_cast<double>(label.text.size()) * wantedSize <= label.width) continue;
    const QRectF space(0, 0, label.width, 0);
    const double width = metrics(painter, wantedSize).boundingRect(space, kFlags, label.text).width();
    if (width > label.width) fit = std::min(fit, label.width / width);
  }
  return fit * wantedSize;
}

double lineHeight(const QPainter& painter, double size) { return metrics(painter, size).height(); }

void drawLabels(QPainter& painter, const std::vector<BoardLabel>& labels, double wantedSize, Qt::Alignment alignment,
                bool isSmooth) {
  const double size = fittingSize(painter, labels, wantedSize);
  if (!(size >= 1)) return;
  QFont font = ORNScreenUtils::systemFontOfSize(size);
  if (!isSmooth) font.setStyleStrategy(QFont::NoAntialias);
  painter.setFont(font);
  for (const BoardLabel& label : labels) {
    if (isPlaced(label)) painter.drawText(QRectF(label.x, label.y, label.width, 0), kFlags | alignment, label.text);
  }
}

}  // namespace orn
