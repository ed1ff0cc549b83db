#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/common/ORNUtils.h>

namespace orn {
namespace {

constexpr int kFinestImage = 3;

/// "dir/name.png" for 1, "dir/name@2x.png" for 2.
QString pathForScale(const QString& path, int scale) {
  if (scale == 1) return path;
  const qsizetype dot = path.lastIndexOf(QLatin1Char('.'));
  const qsizetype end = dot > path.lastIndexOf(QLatin1Char('/')) ? dot : path.size();
  return path.left(end) + QStringLiteral("@%1x").arg(scale) + path.mid(end);
}

std::uint32_t hexNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  return error == std::errc::result_out_of_range ? 0xFFFFFFFF : number;
}

}  // namespace

QFont ORNScreenUtils::systemFontOfSize(double size) {
  QFont font = QApplication::font();
  // A size in pixels can't hold a fraction, one in typographic points can: 72 of them to the inch.
  font.setPointSizeF(std::max(size, 1.0) * 72 / QApplication::primaryScreen()->logicalDotsPerInchY());
  return font;
}

QImage ORNScreenUtils::imageWithContentsOfFile(const std::string& path, double pixelRatio) {
  const QString base = QString::fromStdString(path);
  const int finest = std::clamp(static_cast<int>(std::ceil(std::min(pixelRatio, 1.0 * kFinestImage))), 1, kFinestImage);
  for (int scale = finest; scale >= 1; --scale) {
    QImage image(pathForScale(base, scale));
    if (image.isNull()) continue;
    image.setDevicePixelRatio(scale);
    return image;
  }
  return {};
}

QImage ORNScreenUtils::imageResource(const std::string& name, double pixelRatio) {
  const auto path = ORNUtils::pathForImageResource(name, "png");
  return path ? imageWithContentsOfFile(*path, pixelRatio) : QImage();
}

QImage ORNScreenUtils::getImageFromView(QWidget& view) {
  const double ratio = view.devicePixelRatioF();
  QImage image((QSizeF(view.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return image;
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::transparent);
  view.render(&image);
  return image;
}

std::optional<QImage> ORNScreenUtils::thumbnailWithImageWithoutScale(const QImage& image, QSizeF size) {
  if (image.isNull()) return std::nullopt;
  const double ratio = image.devicePixelRatio();
  QImage thumbnail((size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
  if (thumbnail.isNull()) return std::nullopt;
  thumbnail.setDevicePixelRatio(ratio);
  thumbnail.fill(Qt::transparent);
  QRectF drawn({0, 0}, image.deviceIndependentSize().scaled(size, Qt::KeepAspectRatio));
  drawn.moveCenter({size.width() / 2, size.height() / 2});
  QPainter painter(&thumbnail);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(drawn, image);
  return thumbnail;
}

AttributedText ORNScreenUtils::getAttributedWithString(const QString& text, double WithLineSpace, double kern,
                                                       const QFont& font) {
  return {text, WithLineSpace, kern, font};
}

QSizeF ORNScreenUtils::getAttributionHeightWithString(const QString& text, double lineSpace, double kern,
                                                      const QFont& font, double width) {
  return AttributedText(text, lineSpace, kern, font).boundingSize(width);
}

QColor ORNScreenUtils::colorFromHexRGB(const std::string& text) { return colorFromHexARGB("FF" + text); }

QColor ORNScreenUtils::colorFromHexARGB(const std::string& text) { return QColor::fromRgba(hexNumber(text)); }

}  // namespace orn
