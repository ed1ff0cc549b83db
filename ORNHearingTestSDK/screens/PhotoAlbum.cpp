#include <ORNHearingTestSDK/screens/PhotoAlbum.h>

#include <QtCore/QDir>
#include <QtCore/QSaveFile>
#include <QtCore/QStandardPaths>
#include <QtGui/QImage>

#include <ORNHearingTestSDK/common/DateText.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {
namespace {

QString freePath(const QDir& folder) {
  const std::string moment = dateText(Platform::current().runLoop->date(), "%Y-%m-%d %H-%M-%S");
  const QString name = QStringLiteral("听力测试结果 ") + QString::fromStdString(moment);
  QString path = folder.filePath(name + QStringLiteral(".png"));
  for (int number = 2; QFile::exists(path); ++number) {
    path = folder.filePath(QStringLiteral("%1 (%2).png").arg(name).arg(number));
  }
  return path;
}

}  // namespace

bool saveToPhotoAlbum(const QImage& image) {
  const QDir folder(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
  if (image.isNull() || !folder.mkpath(QStringLiteral("."))) return false;
  QSaveFile file(freePath(folder));
  return file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.commit();
}

}  // namespace orn
