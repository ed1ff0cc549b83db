#include <ORNHearingTestSDK/screens/ShopFooterView.h>

#include <utility>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/AttributedButton.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {
namespace {

constexpr int kFooterHeight = 170;
constexpr double kFooterLineSpace = 15;
constexpr int kFooterFontSize = 12;

AttributedText footerText(const QString& text, const QColor& colour) {
  AttributedText attributed =
      ORNScreenUtils::getAttributedWithString(text, kFooterLineSpace, 0, systemFont(kFooterFontSize));
  attributed.addColor(colour, 0, text.size());
  return attributed;
}

AttributedText buyText() {
  const QString text = QStringLiteral("还没有听力检测仪？\n点此立即购买听力检测仪，即刻关爱您的听力健康。\n");
  const QString offer = QStringLiteral("立即购买听力检测仪");
  AttributedText attributed = footerText(text, kDarkGrayColour);
  attributed.addColor(ORNScreenUtils::colorFromHexRGB("fc6400"), text.indexOf(offer), offer.size());
  return attributed;
}

}  // namespace

ShopFooterView::ShopFooterView(std::function<void(QWidget* sender)> goToShop)
    : buy_(new AttributedButton(buyText(), this)),
      credit_(new AttributedButton(footerText(QStringLiteral("奥伦声提供技术支持"), kLightGrayColour), this)) {
  buy_->setCornerRadius(5);
  buy_->setCursor(Qt::PointingHandCursor);
  connect(buy_, &QAbstractButton::clicked, this, [this, act = std::move(goToShop)] { act(buy_); });
  credit_->setAttribute(Qt::WA_TransparentForMouseEvents);  // it has no action
  credit_->setFocusPolicy(Qt::NoFocus);
}

void ShopFooterView::setWidth(int width) {
  resize(width, kFooterHeight);
  buy_->setGeometry(0, 0, width, 80);
  credit_->setGeometry(0, 150, width, 20);
}

}  // namespace orn
