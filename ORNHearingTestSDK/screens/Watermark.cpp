#include <ORNHearingTestSDK/screens/Watermark.h>

#include <string>

#include <QtCore/QRect>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <ORNHearingTestSDK/common/ORNUtils.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {
namespace {

/// The watermark as it was last drawn. Stretching it takes longer than all the rest of a board, and the boards of a
/// screen have one size.
struct LastDrawn {
  std::string path;
  QImage image;
};

const QImage& stretched(const std::string& path, QSize pixels, double pixelRatio) {
  static LastDrawn last;
  if (last.path == path && last.image.size() == pixels) return last.image;
  const QImage whole = ORNScreenUtils::imageWithContentsOfFile(path, pixelRatio);
  last.path = whole.isNull() ? std::string() : path;
  last.image = whole.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                   .convertToFormat(QImage::Format_ARGB32_Premultiplied);
  return last.image;
}

}  // namespace

void drawWatermark(QPainter& painter, const QRect& rect) {
  // A window may still be drawn when its program has put the platform away.
  if (rect.isEmpty() || !Platform::isInForce()) return;
  const auto path = ORNUtils::pathForImageResource("shuiyin", "png");
  if (!path) return;
  const double ratio = painter.deviceTransform().m11();
  const QImage& image = stretched(*path, (QSizeF(rect.size()) * ratio).toSize(), ratio);
  if (!image.isNull()) painter.drawImage(QRectF(rect), image);
}

}  // namespace orn
