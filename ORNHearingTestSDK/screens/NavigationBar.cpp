#include <ORNHearingTestSDK/screens/NavigationBar.h>

#include <utility>

#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <ORNHearingTestSDK/screens/Appearance.h>

namespace orn {
namespace {

constexpr int kBarMargin = 8;
constexpr float kTranslucentAlpha = 0.96F;

void perform(const std::optional<BarItem>& item) {
  const auto action = item ? item->action : nullptr;  // a copy, since it may take the bar away
  if (action) action();
}

}  // namespace

NavigationBar::NavigationBar(QWidget* parent)
    : QWidget(parent), title_(new QLabel(this)), left_(makeButton()), right_(makeButton()) {
  title_->setAlignment(Qt::AlignCenter);
  title_->setTextFormat(Qt::PlainText);
  title_->setFont(systemFont(17, QFont::DemiBold));
  title_->setObjectName(QStringLiteral("title"));
  connect(left_, &QPushButton::clicked, this, [this] { perform(leftItem_); });
  connect(right_, &QPushButton::clicked, this, [this] { perform(rightItem_); });
}

QPushButton* NavigationBar::makeButton() {
  auto* button = new QPushButton(this);
  button->setFont(systemFont(17, QFont::DemiBold));
  makeTextButton(button);
  return button;
}

void NavigationBar::setItems(const QString& title, std::optional<BarItem> left, std::optional<BarItem> right) {
  title_->setText(title);
  leftItem_ = std::move(left);
  rightItem_ = std::move(right);
  fill(left_, leftItem_);
  fill(right_, rightItem_);
  resizeEvent(nullptr);
}

void NavigationBar::fill(QPushButton* button, const std::optional<BarItem>& item) {
  button->setVisible(item.has_value());
  button->setText(item ? item->title : QString());
  button->setAccessibleName(button->text());
}

void NavigationBar::setTranslucent(bool isTranslucent) {
  isTranslucent_ = isTranslucent;
  update();
}

void NavigationBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor::fromRgbF(1, 1, 1, isTranslucent_ ? kTranslucentAlpha : 1));
  painter.fillRect(0, height() - 1, width(), 1, kSeparatorColour);
}

void NavigationBar::resizeEvent(QResizeEvent* /*event*/) {
  const auto widthOf = [this](const QPushButton* button) {
    return button->isHidden() ? 0 : qMin(button->sizeHint().width(), width() / 3);
  };
  const int leftWidth = widthOf(left_), rightWidth = widthOf(right_);
  left_->setGeometry(kBarMargin, 0, leftWidth, height() - 1);
  right_->setGeometry(width() - kBarMargin - rightWidth, 0, rightWidth, height() - 1);
  const int side = qMax(leftWidth, rightWidth) + 2 * kBarMargin;
  title_->setGeometry(side, 0, qMax(width() - 2 * side, 0), height() - 1);
}

}  // namespace orn
