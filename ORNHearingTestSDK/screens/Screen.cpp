#include <ORNHearingTestSDK/screens/Screen.h>

#include <utility>

#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>

namespace orn {

Screen::~Screen() {
  if (!view_) return;
  view_->hide();
  view_->deleteLater();  // perhaps one of its own events is under way
}

void Screen::setTitle(const QString& title) {
  title_ = title;
  barChanged();
}

void Screen::setLeftBarItem(BarItem item) {
  leftBarItem_ = std::move(item);
  barChanged();
}

void Screen::setRightBarItem(BarItem item) {
  rightBarItem_ = std::move(item);
  barChanged();
}

void Screen::barChanged() const {
  if (const auto navigation = navigationController()) navigation->updateBar();
}

void Screen::showByNavigation(const std::shared_ptr<NavigationController>& navigation,
                              const std::optional<QString>& leftBarTitle, Action leftBarAction,
                              const std::optional<QString>& rightBarTitle, Action rightBarAction) {
  navi_ = navigation;
  const auto self = weak_from_this();
  if (leftBarTitle) {
    leftBarAction_ = std::move(leftBarAction);
    setLeftBarItem({*leftBarTitle, [self] {
                      if (const auto screen = self.lock()) screen->leftButtonClick();
                    }});
  }
  if (rightBarTitle) {
    rightBarAction_ = std::move(rightBarAction);
    setRightBarItem({*rightBarTitle, [self] {
                       if (const auto screen = self.lock()) screen->rightButtonClick();
                     }});
  }
  if (navigation) navigation->push(shared_from_this());
}

// Copies, since an action may let go of the screen.
void Screen::leftButtonClick() const {
  if (const Action action = leftBarAction_) action();
}

void Screen::rightButtonClick() const {
  if (const Action action = rightBarAction_) action();
}

void Screen::present(const std::shared_ptr<NavigationController>& navigation) {
  if (const auto own = navigationController(); own && window_) window_->present(navigation, own);
}

void Screen::dismiss() {
  const auto own = navigationController();
  if (!own) return;
  if (!window_ || !window_->dismiss(own)) own->pop(shared_from_this());
}

QSize Screen::mainScreen() const { return window_ ? window_->size() : QSize(); }

int Screen::barHeight() const { return navigationController() ? NavigationController::kBarHeight : 0; }

int Screen::statusBarHeight() const { return window_ ? window_->statusBarHeight() : 0; }

NavigationWindow* Screen::window() const { return window_; }

void Screen::showAlert(const Alert& alert) {
  if (!window_ || !navigationController() || window_->showsAlert(this, alert.tag)) return;
  window_->showAlert(
      alert,
      [self = weak_from_this()](int tag, int buttonIndex) {
        if (const auto screen = self.lock()) screen->alertView(tag, buttonIndex);
      },
      this);
}

void Screen::withdrawAlert(int tag) {
  if (window_) window_->withdrawAlerts(this, tag);
}

bool Screen::isAlertRead(int tag) const { return window_ && window_->isAlertRead(this, tag); }

void Screen::alertView(int /*tag*/, int /*buttonIndex*/) {}

QWidget* Screen::loadView(QWidget* parent) { return new QWidget(parent); }

void Screen::load(NavigationWindow* window, QWidget* parent) {
  window_ = window;
  if (view_) {
    view_->setParent(parent);
    return;
  }
  view_ = loadView(parent);
  view_->setGeometry({{}, mainScreen()});
  view_->setAutoFillBackground(true);
  viewDidLoad();
}

void Screen::detach() {
  navigationController_.reset();  // first, so that the screen knows that it leaves for good
  setOnScreen(false);
  didLeaveStack();
  if (window_) window_->withdrawAlerts(this);
  if (!view_) return;
  view_->hide();
  view_->setParent(window_);  // whoever still holds the screen may use it
}

void Screen::setOnScreen(bool isOnScreen) {
  if (std::exchange(isOnScreen_, isOnScreen) == isOnScreen) return;
  if (isOnScreen) {
    viewDidAppear();
  } else {
    viewDidDisappear();
  }
}

}  // namespace orn
