#include <ORNHearingTestSDK/screens/DeviceCell.h>

#include <QtWidgets/QLabel>

#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/TextLabel.h>

namespace orn {
namespace {

constexpr int kImageSize = 60;
constexpr int kMargin = 12;
constexpr int kTextLeft = 82;
constexpr int kTitleHeight = 26;
constexpr int kGap = 4;
constexpr int kCornerRadius = 30;

}  // namespace

DeviceCell::DeviceCell()
    : TableCell(identifier()), image_(new QLabel(this)), title_(new TextLabel(this)), detail_(new TextLabel(this)) {
  setDisclosureMark(true);
  setCornerRadius(kCornerRadius);
}

void DeviceCell::setContents(const std::string& imageName, const AttributedText& title, const AttributedText& detail) {
  showImage(imageName, devicePixelRatioF());
  title_->setAttributedText(title);
  detail_->setAttributedText(detail);
  detailText_ = detail;
  setAccessibleName(title_->text());
  setAccessibleDescription(detail_->text());
  layOut();
}

/// A row is filled anew at every change of the route, mostly with what it shows.
void DeviceCell::showImage(const std::string& name, double pixelRatio) {
  if (name == imageName_ && pixelRatio == imageRatio_) return;
  imageName_ = name;
  imageRatio_ = pixelRatio;
  const int pixels = qRound(kImageSize * pixelRatio);
  QImage image = ORNScreenUtils::imageResource(name, pixelRatio);
  if (!image.isNull()) {
    image = image.scaled(pixels, pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(pixelRatio);
  }
  image_->setPixmap(QPixmap::fromImage(image));
}

void DeviceCell::layOut() {
  const int textWidth = qMax(width() - kBesideText, 0);
  const double detailHeight = detailText_.boundingSize(textWidth).height();
  const double top = (height() - kTitleHeight - kGap - detailHeight) / 2;
  image_->setGeometry(kMargin, (height() - kImageSize) / 2, kImageSize, kImageSize);
  title_->setFrame(QRectF(kTextLeft, top, textWidth, kTitleHeight));
  detail_->setFrame(QRectF(kTextLeft, top + kTitleHeight + kGap, textWidth, detailHeight));
}

void DeviceCell::resizeEvent(QResizeEvent* /*event*/) { layOut(); }

}  // namespace orn
