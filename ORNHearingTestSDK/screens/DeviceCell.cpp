#include <ORNHearingTestSDK/screens/DeviceCell.h>

#include <utility>

#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/BusySign.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/TextLabel.h>

namespace orn {
namespace {

constexpr int kImageSize = 60;
constexpr int kCellMargin = 12;
constexpr int kTextLeft = 82;
constexpr int kTitleHeight = 26;
constexpr int kGap = 4;
constexpr int kCellCornerRadius = 30;
constexpr int kRightMargin = 18;
constexpr QSize kGiveUpSize{52, 40};

}  // namespace

DeviceCell::DeviceCell()
    : TableCell(identifier()),
      busy_(new BusySign(this)),
      giveUp_(new QPushButton(QStringLiteral("取消"), this)),
      image_(new QLabel(this)),
      title_(new TextLabel(this)),
      detail_(new TextLabel(this)) {
  giveUp_->setFont(systemFont(14));
  giveUp_->setAccessibleName(QStringLiteral("取消"));
  makeTextButton(giveUp_);
  giveUp_->hide();
  connect(giveUp_, &QPushButton::clicked, this, [this] {
    if (const auto told = onGiveUp_) told();
  });
  busy_->onChange = [this](bool isShown) { showWaiting(isShown); };
  setDisclosureMark(true);
  setCornerRadius(kCellCornerRadius);
}

void DeviceCell::setContents(const std::string& imageName, const AttributedText& title, const AttributedText& detail) {
  showImage(imageName, devicePixelRatioF());
  title_->setAttributedText(title);
  detail_->setAttributedText(detail);
  detailText_ = detail;
  setAccessibleName(title_->text());
  if (busy_->isHidden()) setAccessibleDescription(detail_->text());
  layOut();
}

void DeviceCell::waitFor(std::weak_ptr<void> object, std::function<void()> giveUp) {
  onGiveUp_ = std::move(giveUp);
  busy_->waitFor(std::move(object));
}

void DeviceCell::stopWaiting() { waitFor({}, {}); }

bool DeviceCell::isWaiting() const { return busy_->isWaiting(); }

void DeviceCell::showWaiting(bool isWaiting) {
  // The keyboard stays with the row.
  if (!isWaiting && giveUp_ == window()->focusWidget()) setFocus();
  giveUp_->setVisible(isWaiting);
  giveUp_->raise();
  setAccessibleDescription(isWaiting ? QStringLiteral("正在获取校准数据…") : detail_->text());
}

/// A row is filled anew at every change of the route, mostly with what it already shows.
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
  image_->setGeometry(kCellMargin, (height() - kImageSize) / 2, kImageSize, kImageSize);
  const int right = width() - kRightMargin;
  giveUp_->setGeometry(right - kGiveUpSize.width(), qMax(0, qRound(top + (kTitleHeight - kGiveUpSize.height()) / 2.0)),
                       kGiveUpSize.width(), kGiveUpSize.height());
  busy_->move(giveUp_->x() - BusySign::kSize, giveUp_->geometry().center().y() - BusySign::kSize / 2);
  title_->setFrame(QRectF(kTextLeft, top, textWidth, kTitleHeight));
  detail_->setFrame(QRectF(kTextLeft, top + kTitleHeight + kGap, textWidth, detailHeight));
}

void DeviceCell::resizeEvent(QResizeEvent* /*event*/) { layOut(); }

}  // namespace orn
