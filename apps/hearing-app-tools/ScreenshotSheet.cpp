#include "hearing-app-tools/ScreenshotSheet.h"

#include <QtCore/QDir>
#include <QtGui/QPainter>

namespace orn {
namespace {

constexpr int kColumns = 10, kGap = 6;

}  // namespace

QStringList screenshotNames(const QString& folder, const ScreenSize& screen) {
  const QSize size = screen.pixels();
  const QString pattern = QStringLiteral("*-%1x%2.png").arg(size.width()).arg(size.height());
  return QDir(folder).entryList({pattern}, QDir::Files, QDir::Name);
}

QRect placeOnSheet(int number, const ScreenSize& screen) {
  const QSize size = screen.points / 3;
  return {QPoint(number % kColumns * (size.width() + kGap), number / kColumns * (size.height() + kGap)), size};
}

QImage screenshotSheet(const QString& folder, const ScreenSize& screen) {
  const QStringList names = screenshotNames(folder, screen);
  const int count = static_cast<int>(names.size());
  const QRect last = placeOnSheet(count - 1, screen), widest = placeOnSheet(kColumns - 1, screen);
  QImage sheet(widest.right() + 1, last.bottom() + 1, QImage::Format_RGB32);
  sheet.fill(Qt::darkGray);
  QPainter painter(&sheet);
  for (int number = 0; number < count; ++number) {
    const QRect place = placeOnSheet(number, screen);
    const QImage picture(QDir(folder).filePath(names[number]));
    painter.drawImage(place, picture.scaled(place.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  }
  return sheet;
}

}  // namespace orn
