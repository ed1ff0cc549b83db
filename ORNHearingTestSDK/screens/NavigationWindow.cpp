#include <ORNHearingTestSDK/screens/NavigationWindow.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include <QtGui/QCloseEvent>
#include <QtGui/QHideEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QResizeEvent>
#include <QtGui/QShowEvent>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/screens/AlertView.h>
#include <ORNHearingTestSDK/screens/Animation.h>
#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/Screen.h>
#include <ORNHearingTestSDK/screens/SpokenChildren.h>

namespace orn {
namespace {

constexpr std::chrono::milliseconds kPresentationTime{300};
constexpr QSize kPhone{375, 667};
constexpr QSize kSmallest{320, 480};  // of phones

}  // namespace

NavigationWindow::NavigationWindow(QWidget* parent) : QWidget(parent) {
  setPalette(lightPalette());
  setAutoFillBackground(true);
  setMinimumSize(kSmallest);
  resize(kPhone);
  setObjectName(QLatin1String(kGroundName));
  keepColours();
  spoken_ = new SpokenChildren(this, [this] { return spokenViews(); });
  stacks_.push_back(NavigationController::init());
  stacks_.front()->enter(this);
}

NavigationWindow::~NavigationWindow() {
  isGoing_ = true;
  for (auto stack = stacks_.rbegin(); stack != stacks_.rend(); ++stack) (*stack)->leave();
}

QSize NavigationWindow::sizeHint() const { return kPhone; }

void NavigationWindow::setStatusBarHeight(int height) {
  statusBarHeight_ = height;
  for (const auto& one : stacks_) one->layOut();
}

bool NavigationWindow::present(const std::shared_ptr<NavigationController>& navigation,
                               const std::shared_ptr<NavigationController>& presenter) {
  if (!navigation || navigation->screens().empty() || navigation->container() || presenter != front()) return false;
  QWidget* covered = makePicture(presenter->container());
  stacks_.push_back(navigation);
  navigation->enter(this);
  presenter->container()->hide();
  presenter->setOnScreen(false);
  navigation->setOnScreen(isVisible());
  QWidget* coming = navigation->container();
  animate(
      covered, kPresentationTime,
      [this, coming = QPointer(coming)](double progress) {
        if (coming) coming->move(0, qRound(height() * (1 - progress)));
      },
      [covered] { covered->deleteLater(); });
  arrangeAlerts();
  focusFront();
  return true;
}

bool NavigationWindow::dismiss(const std::shared_ptr<NavigationController>& navigation) {
  const auto first = std::find(stacks_.begin(), stacks_.end(), navigation);
  if (first == stacks_.begin() || first == stacks_.end()) return false;
  std::vector gone(first, stacks_.end());
  QWidget* picture = makePicture(gone.back()->container());
  stacks_.erase(first, stacks_.end());
  for (auto stack = gone.rbegin(); stack != gone.rend(); ++stack) (*stack)->leave();
  front()->container()->show();
  front()->setOnScreen(isVisible());
  animate(
      picture, kPresentationTime, [this, picture](double progress) { picture->move(0, qRound(height() * progress)); },
      [picture] { picture->deleteLater(); });
  arrangeAlerts();
  focusFront();
  return true;
}

void NavigationWindow::showAlert(const Alert& alert, std::function<void(int tag, int buttonIndex)> handler) {
  showAlert(alert, std::move(handler), nullptr);
}

void NavigationWindow::showAlert(const Alert& alert, std::function<void(int tag, int buttonIndex)> handler,
                                 const Screen* owner) {
  auto* shown = new AlertView(alert, this);
  shown->onAnswer = [this, shown, tag = alert.tag, handler = std::move(handler)](int buttonIndex) {
    const auto told = handler;  // a copy, since the alert goes first
    takeAway([shown](const ShownAlert& one) { return one.view == shown; });
    if (told) told(tag, buttonIndex);
  };
  alerts_.push_back({shown, owner, alert.tag});
  arrangeAlerts();
  shown->appear();
}

bool NavigationWindow::isAlertRead(const Screen* owner, int tag) const {
  return std::any_of(alerts_.begin(), alerts_.end(),
                     [&](const ShownAlert& one) { return one.owner == owner && one.tag == tag && one.view->isRead(); });
}

bool NavigationWindow::showsAlert(const Screen* owner, int tag) const {
  return std::any_of(alerts_.begin(), alerts_.end(),
                     [&](const ShownAlert& one) { return one.owner == owner && one.tag == tag; });
}

void NavigationWindow::withdrawAlerts(const Screen* owner, std::optional<int> tag) {
  takeAway([&](const ShownAlert& one) { return one.owner == owner && (!tag || one.tag == *tag); });
}

template <class Condition>
void NavigationWindow::takeAway(Condition isMeant) {
  const auto gone = std::stable_partition(alerts_.begin(), alerts_.end(), std::not_fn(isMeant));
  if (gone == alerts_.end()) return;
  const std::vector<ShownAlert> taken(gone, alerts_.end());
  alerts_.erase(gone, alerts_.end());
  for (const ShownAlert& one : taken) {
    one.view->hide();
    one.view->deleteLater();  // perhaps its button's event is under way
  }
  arrangeAlerts();
  focusFront();
}

void NavigationWindow::arrangeAlerts() {
  if (overEverything_) overEverything_->raise();
  for (const ShownAlert& one : alerts_) {
    one.view->setGeometry(rect());
    one.view->raise();
    one.view->setVisible(one.view == alerts_.back().view);
  }
  spoken_->changed();
}

void NavigationWindow::showOverEverything(QWidget* view) {
  view->setParent(this);
  overEverything_ = view;
  view->show();
  arrangeAlerts();
  focusFront();
}

bool NavigationWindow::isCovered() const {
  return !alerts_.empty() ||
         (overEverything_ && overEverything_->parentWidget() == this && !overEverything_->isHidden());
}

/// A screen that comes back has the keyboard where it was.
void NavigationWindow::focusFront() {
  spoken_->changed();
  if (!alerts_.empty()) return alerts_.back().view->takeFocus();
  if (isCovered()) return overEverything_->setFocus();
  const auto top = front()->topScreen();
  if (!top || !top->view()->isVisibleTo(this)) return;  // it is on its way, and gets the keyboard once it is there
  QWidget* const last = top->view()->focusWidget();
  if (last && last != top->view() && last->isVisibleTo(this) && last->isEnabled()) {
    last->setFocus();
  } else if (top->firstFocus()) {
    top->firstFocus()->setFocus();
  }
}

/// What is covered is not spoken.
QWidgetList NavigationWindow::spokenViews() const {
  if (!alerts_.empty()) return {alerts_.back().view};
  if (isCovered()) return {overEverything_};
  QWidget* front = stacks_.empty() ? nullptr : stacks_.back()->container();
  return front ? QWidgetList{front} : QWidgetList();
}

bool NavigationWindow::asksBeforeClosing() const {
  const auto top = stacks_.back()->topScreen();
  return !closesUnasked_ && top && top->asksBeforeClosing();
}

void NavigationWindow::closeEvent(QCloseEvent* event) {
  if (!asksBeforeClosing()) return;
  event->ignore();
  const auto top = front()->topScreen();
  top->askBeforeClosing();
}

void NavigationWindow::keyPressEvent(QKeyEvent* event) {
  const auto top = front()->topScreen();
  const bool isMeant = event->key() == Qt::Key_Escape && top && top->escapePressed();
  if (!isMeant) QWidget::keyPressEvent(event);
}

/// The tabulator key finds nothing beneath a view that covers everything.
bool NavigationWindow::focusNextPrevChild(bool next) { return isCovered() || QWidget::focusNextPrevChild(next); }

void NavigationWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::StyleChange || event->type() == QEvent::ParentChange) keepColours();
  QWidget::changeEvent(event);
}

/// A host's style sheet would colour texts and grounds alike. Where there is none, ours costs nothing.
void NavigationWindow::keepColours() {
  bool isStyled = !qApp->styleSheet().isEmpty();
  for (const QWidget* one = parentWidget(); one; one = one->parentWidget()) isStyled |= !one->styleSheet().isEmpty();
  const QString wanted = isStyled ? ownColours() : QString();
  if (styleSheet() != wanted) setStyleSheet(wanted);
}

void NavigationWindow::resizeEvent(QResizeEvent* /*event*/) {
  for (const auto& one : stacks_) one->layOut();
  arrangeAlerts();
}

void NavigationWindow::showEvent(QShowEvent* /*event*/) { front()->setOnScreen(true); }

void NavigationWindow::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) front()->setOnScreen(false);
}

}  // namespace orn
