#include <ORNHearingTestSDK/screens/AlertView.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include <QtCore/QPointer>
#include <QtGui/QAccessible>
#include <QtGui/QFontMetrics>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QShowEvent>
#include <QtWidgets/QFrame>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/screens/Animation.h>
#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/SpokenChildren.h>

namespace orn {
namespace {

constexpr int kCardWidth = 270;
constexpr int kButtonHeight = 46;
constexpr int kCornerRadius = 14;
constexpr double kDim = 0.45;
constexpr std::chrono::milliseconds kFade{150};

constexpr int kTextMargin = 18;
constexpr int kHintHeight = 26;
constexpr int kHintSpacing = 10;

/// The smallest width at which the text takes no more lines: they are then about equally long, and no single character
/// is left for the last one.
int evenWidth(const QString& text, const QFont& font, int most) {
  const QFontMetrics metrics(font);
  const auto height = [&](int width) {
    return metrics.boundingRect(QRect(0, 0, width, 0), Qt::AlignCenter | Qt::TextWordWrap, text).height();
  };
  const int wanted = height(most);
  int width = most;
  while (width > most / 2 && height(width - 1) == wanted) --width;
  return width;
}

QLabel* makeText(const QString& text, const QFont& font) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  label->setFont(font);
  label->setObjectName(QStringLiteral("alert"));
  // A fixed height too, since a layout asks an aligned label for the height of a single line only.
  const int width = evenWidth(text, font, kCardWidth - 2 * kTextMargin);
  label->setFixedSize(width, label->heightForWidth(width));
  return label;
}

/// The outer corners at the bottom are the card's.
QString buttonStyle(bool isFirst, bool isLast, bool areBeside) {
  const auto radius = [&](bool isOuter) { return isLast || areBeside ? (isOuter ? kCornerRadius : 0) : 0; };
  return QStringLiteral(
             "QPushButton { outline: none; border: 0 solid %1; border-top-width: 1px; border-left-width: %2px; color: "
             "%3;"
             " background: transparent; border-bottom-left-radius: %4px; border-bottom-right-radius: %5px; }"
             "QPushButton:pressed { background: %6; }"
             "QPushButton:focus { background: %6; text-decoration: underline; }")
      .arg(kSeparatorColour.name())
      .arg(areBeside && !isFirst ? 1 : 0)
      .arg(kAccentColour.name())
      .arg(radius(isFirst || !areBeside))
      .arg(radius(isLast))
      .arg(kPressedColour.name());
}

}  // namespace

AlertView::AlertView(const Alert& alert, QWidget* parent)
    : QWidget(parent), card_(new QFrame(this)), cancelButton_(alert.cancelButton) {
  new SpokenChildren(  // first, since a screen reader takes what it finds when the first text is set
      this, [this] { return QWidgetList{card_}; }, QAccessible::AlertMessage);
  setAccessibleName(alert.title);
  setAccessibleDescription(alert.message);
  setFocusPolicy(Qt::StrongFocus);
  card_->setObjectName(QStringLiteral("card"));
  card_->setStyleSheet(QStringLiteral("#card { background: white; border-radius: %1px; }"
                                      "#card QLabel { color: black; background: transparent; border: none; }")
                           .arg(kCornerRadius));
  card_->setFixedWidth(kCardWidth);
  auto* column = new QVBoxLayout(card_);
  column->setContentsMargins(0, 20, 0, 0);
  column->setSpacing(0);
  addTexts(alert, column);
  addButtons(alert, column);
  auto* middle = new QVBoxLayout(this);
  middle->setSpacing(0);
  middle->addStretch(1);
  middle->addSpacing(kHintSpacing + kHintHeight);  // as beneath it, so that the card is in the middle
  middle->addWidget(card_, 0, Qt::AlignHCenter);
  addHint(middle);
  middle->addStretch(1);
}

void AlertView::addTexts(const Alert& alert, QBoxLayout* column) {
  auto* texts = new QVBoxLayout;
  texts->setContentsMargins(kTextMargin, 0, kTextMargin, 20);
  texts->setSpacing(8);
  texts->addWidget(makeText(alert.title, systemFont(17, QFont::DemiBold)), 0, Qt::AlignHCenter);
  texts->addWidget(makeText(alert.message, systemFont(14)), 0, Qt::AlignHCenter);
  column->addLayout(texts);
}

void AlertView::addButtons(const Alert& alert, QBoxLayout* column) {
  const bool areBeside = alert.buttons.size() == 2;
  auto* row = new QBoxLayout(areBeside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
  row->setSpacing(0);
  for (int index = 0; index < alert.buttons.size(); ++index) {
    auto* button = new QPushButton(alert.buttons[index]);
    button->setFixedHeight(kButtonHeight);
    button->setAutoDefault(true);
    button->setFont(systemFont(16, index == cancelButton_ ? QFont::Normal : QFont::DemiBold));
    button->setStyleSheet(buttonStyle(index == 0, index + 1 == alert.buttons.size(), areBeside));
    button->setAccessibleName(alert.buttons[index]);
    button->setObjectName(QStringLiteral("alert"));
    button->installEventFilter(this);
    connect(button, &QPushButton::clicked, this, [this, index] { answer(index); });
    buttons_.push_back(button);
    row->addWidget(button, 1);
  }
  column->addLayout(row);
}

void AlertView::addHint(QBoxLayout* column) {
  if (buttons_.empty()) return column->addSpacing(kHintSpacing + kHintHeight);
  auto* hint = new QLabel(buttons_.size() == 1 ? QStringLiteral("按回车键或空格键选择")
                                               : QStringLiteral("按Tab键切换，按回车键选择"));
  hint->setFont(systemFont(12));
  hint->setFixedHeight(kHintHeight);
  hint->setStyleSheet(QStringLiteral("color: white; background: rgba(0, 0, 0, 170); border: none; padding: 0 10px;"
                                     "border-radius: %1px;")
                          .arg(kHintHeight / 2));
  column->addSpacing(kHintSpacing);
  column->addWidget(hint, 0, Qt::AlignHCenter);
  setAccessibleDescription(accessibleDescription() + QStringLiteral("。") + hint->text());
}

void AlertView::answer(int buttonIndex) {
  if (const auto told = std::exchange(onAnswer, nullptr)) told(buttonIndex);
}

void AlertView::appear() {
  takeFocus();
  QAccessibleEvent spoken(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&spoken);
  animate(this, kFade, [this](double progress) {
    opacity_ = progress;
    update();
  });
}

/// The button that does no harm, at once; an only one after the moment.
void AlertView::takeFocus() {
  if (card_->isAncestorOf(window()->focusWidget())) return;
  if (buttons_.size() > 1 && cancelButton_ >= 0) {
    buttons_[static_cast<std::size_t>(cancelButton_)]->setFocus();
  } else if (buttons_.size() == 1 && isRead_) {
    buttons_.front()->setFocus();
  } else {
    setFocus();
  }
}

/// The moment counts from each time that the alert comes into view, also from beneath another one.
void AlertView::showEvent(QShowEvent* event) {
  if (event->spontaneous()) return;
  isRead_ = false;
  Platform::current().runLoop->performAfterDelay(kKeyPause, [self = QPointer(this), time = ++timesShown_] {
    if (!self || time != self->timesShown_ || self->isHidden()) return;
    self->isRead_ = true;
    self->takeFocus();
  });
}

/// A key that is held answers nothing.
bool AlertView::eventFilter(QObject* /*watched*/, QEvent* event) {
  return event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->isAutoRepeat() &&
         static_cast<QKeyEvent*>(event)->key() != Qt::Key_Tab;
}

void AlertView::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(kDim * opacity_)));
}

void AlertView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return;
  if (cancelButton_ >= 0) return answer(cancelButton_);
  if (buttons_.size() == 1) answer(0);
}

void AlertView::mousePressEvent(QMouseEvent* event) { event->accept(); }

/// The tabulator key stays within the card.
bool AlertView::focusNextPrevChild(bool next) {
  const auto focused = std::find(buttons_.begin(), buttons_.end(), focusWidget());
  if (buttons_.empty()) return true;
  const auto count = static_cast<std::ptrdiff_t>(buttons_.size());
  const auto at = focused == buttons_.end() ? (next ? -1 : 0) : focused - buttons_.begin();
  buttons_[static_cast<std::size_t>((at + (next ? 1 : count - 1)) % count)]->setFocus(Qt::TabFocusReason);
  return true;
}

}  // namespace orn
