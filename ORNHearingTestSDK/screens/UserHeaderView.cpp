#include <ORNHearingTestSDK/screens/UserHeaderView.h>

#include <algorithm>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>
#include <ORNHearingTestSDK/screens/TableView.h>
#include <ORNHearingTestSDK/screens/TextLabel.h>

namespace orn {
namespace {

constexpr int kAvatarSize = 80;
constexpr int kNameBelowAvatar = 60;
constexpr QSizeF kNameSize{300, 40};
constexpr int kNameFontSize = 17;

}  // namespace

UserHeaderView::UserHeaderView(bool isWoman, const QString& name)
    : backdrop_(ORNScreenUtils::imageResource("bg", devicePixelRatioF())),
      avatar_(ORNScreenUtils::imageResource(isWoman ? "icon_female" : "icon_male", devicePixelRatioF())),
      name_(new TextLabel(this)) {
  name_->setPlainText(name, systemFont(kNameFontSize), Qt::white, Qt::AlignHCenter);
}

void UserHeaderView::setWidth(int width) {
  resize(width, std::min(width, TableView::kWidestColumn) / 2);
  const QPointF centre(width / 2.0, height() / 2.0 + kNameBelowAvatar);
  name_->setFrame(
      {centre.x() - kNameSize.width() / 2, centre.y() - kNameSize.height() / 2, kNameSize.width(), kNameSize.height()});
}

void UserHeaderView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  painter.fillRect(rect(), Qt::green);  // seen where the backdrop is missing
  painter.drawImage(rect(), backdrop_);
  const QRectF place((width() - kAvatarSize) / 2.0, (height() - kAvatarSize) / 2.0, kAvatarSize, kAvatarSize);
  QPainterPath round;
  round.addEllipse(place);
  painter.setClipPath(round);
  painter.drawImage(place, avatar_);
}

}  // namespace orn
