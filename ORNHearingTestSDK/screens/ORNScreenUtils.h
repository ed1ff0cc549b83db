#pragma once

#include <optional>
#include <string>

#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QImage>

#include <ORNHearingTestSDK/screens/AttributedText.h>
#include <ORNHearingTestSDK/screens/ScreensExport.h>

class QWidget;

namespace orn {

/// The part of ORNUtils that needs fonts, images and colours. Lengths are in points. Main thread.
class ORN_SCREENS_EXPORT ORNScreenUtils {
 public:
  ORNScreenUtils() = delete;

  /// The system's font; its size is the height of its letters' box in points, fractions included.
  static QFont systemFontOfSize(double size);

  /// An image file at the resolution that suits a pixel ratio: "name.png" at 1, else "name@2x.png" or "name@3x.png"
  /// beside it where there is one. An empty image if it can't be read.
  static QImage imageWithContentsOfFile(const std::string& path, double pixelRatio);

  /// The same for an image of the library's own bundle; an empty image if there is none of that name.
  static QImage imageResource(const std::string& name, double pixelRatio);

  /// What the widget shows now, at its pixel ratio.
  static QImage getImageFromView(QWidget& view);

  /// The image fitted into a size without distortion, centred, on a transparent ground; nothing if it is empty or if
  /// the size is.
  static std::optional<QImage> thumbnailWithImageWithoutScale(const QImage& image, QSizeF size);

  /// A text with space between its lines and letters, in points.
  static AttributedText getAttributedWithString(const QString& text, double WithLineSpace, double kern,
                                                const QFont& font);

  /// Width and height of the text, despite the name, when its lines are at most `width` wide.
  static QSizeF getAttributionHeightWithString(const QString& text, double lineSpace, double kern, const QFont& font,
                                               double width);

  /// "rrggbb", opaque.
  static QColor colorFromHexRGB(const std::string& text);

  /// "aarrggbb". Reads as many hexadecimal digits as there are at the beginning, after white space and "0x"; a number
  /// too large reads as ffffffff, a text without any as 0.
  static QColor colorFromHexARGB(const std::string& text);
};

}  // namespace orn
