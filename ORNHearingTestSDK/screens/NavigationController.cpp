#include <ORNHearingTestSDK/screens/NavigationController.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/Animation.h>
#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/NavigationBar.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/Screen.h>
#include <ORNHearingTestSDK/screens/SpokenChildren.h>

namespace orn {
namespace {

constexpr std::chrono::milliseconds kPushTime{250};

}  // namespace

std::shared_ptr<NavigationController> NavigationController::init() {
  return std::shared_ptr<NavigationController>(new NavigationController);
}

std::shared_ptr<NavigationController> NavigationController::initWithRootViewController(
    const std::shared_ptr<Screen>& screen) {
  const auto made = init();
  made->push(screen);
  return made;
}

NavigationController::~NavigationController() { leave(); }

std::shared_ptr<Screen> NavigationController::topScreen() const { return screens_.empty() ? nullptr : screens_.back(); }

void NavigationController::push(const std::shared_ptr<Screen>& screen) {
  if (!screen || screen->navigationController()) return;
  const auto alive = shared_from_this();
  const auto old = topScreen();
  screens_.push_back(screen);
  screen->attach(alive);
  if (!container_) return;
  QWidget* picture = old ? makePicture(old->view()) : nullptr;
  showTop();
  if (picture) slide(screen->view(), picture, true);
  if (!isOnScreen_) return;
  if (old) old->setOnScreen(false);
  screen->setOnScreen(true);
  focusTop();
}

void NavigationController::pop() {
  if (!screens_.empty()) pop(screens_.back());
}

void NavigationController::pop(const std::shared_ptr<Screen>& screen) {
  const auto first = std::find(screens_.begin(), screens_.end(), screen);
  if (first == screens_.begin() || first == screens_.end()) return;
  const auto alive = shared_from_this();
  const std::vector gone(first, screens_.end());
  QWidget* picture = container_ ? makePicture(gone.back()->view()) : nullptr;
  screens_.erase(first, screens_.end());
  for (auto one = gone.rbegin(); one != gone.rend(); ++one) (*one)->detach();
  if (!container_) return;
  showTop();
  slide(picture, picture, false);
  if (isOnScreen_) topScreen()->setOnScreen(true);
  focusTop();
}

void NavigationController::setTranslucent(bool isTranslucent) {
  isTranslucent_ = isTranslucent;
  if (!container_) return;
  bar_->setTranslucent(isTranslucent);
  layOut();
}

void NavigationController::updateBar() {
  const auto top = topScreen();
  if (!bar_ || !top) return;
  auto left = top->leftBarItem();
  if (!left && screens_.size() > 1) {
    const QString title = screens_[screens_.size() - 2]->title();
    left =
        BarItem{QStringLiteral("‹ ") + (title.isEmpty() ? QStringLiteral("返回") : title), [weak = weak_from_this()] {
                  if (const auto navigation = weak.lock()) navigation->pop();
                }};
  }
  bar_->setItems(top->title(), std::move(left), top->rightBarItem());
}

void NavigationController::enter(NavigationWindow* window) {
  window_ = window;
  container_ = new QWidget(window);
  container_->setAutoFillBackground(true);
  container_->setObjectName(QLatin1String(kGroundName));
  spoken_ = new SpokenChildren(container_, [this] { return spokenViews(); });
  bar_ = new NavigationBar(container_);
  bar_->setTranslucent(isTranslucent_);
  layOut();
  if (!screens_.empty()) showTop();
  container_->show();
}

void NavigationController::leave() {
  for (const auto& one : std::exchange(screens_, {})) one->detach();
  isOnScreen_ = false;
  if (!container_) return;
  container_->hide();
  container_->deleteLater();  // perhaps one of its own events is under way
  container_.clear();
}

void NavigationController::setOnScreen(bool isOnScreen) {
  if (std::exchange(isOnScreen_, isOnScreen) == isOnScreen) return;
  if (const auto top = topScreen()) top->setOnScreen(isOnScreen);
  if (isOnScreen) focusTop();
}

int NavigationController::contentTop() const { return isTranslucent_ ? 0 : kBarHeight + window_->statusBarHeight(); }

void NavigationController::layOut() {
  if (!container_) return;
  container_->setGeometry(window_->rect());
  bar_->setGeometry(0, window_->statusBarHeight(), container_->width(), kBarHeight);
  for (const auto& one : screens_) {
    if (!one->view()) continue;
    one->view()->setGeometry(0, contentTop(), container_->width(), container_->height() - contentTop());
    one->layOut();
  }
}

void NavigationController::showTop() {
  const auto top = topScreen();
  top->load(window_, container_);
  for (const auto& one : screens_) {
    if (one != top && one->view()) one->view()->hide();
  }
  top->view()->setGeometry(0, contentTop(), container_->width(), container_->height() - contentTop());
  top->view()->show();
  bar_->raise();
  updateBar();
  spoken_->changed();
}

/// From the top down.
QWidgetList NavigationController::spokenViews() const {
  const auto top = topScreen();
  QWidgetList views{bar_};
  if (top && top->view()) views << top->view();
  return views;
}

void NavigationController::slide(QWidget* view, QWidget* picture, bool isComing) {
  view->raise();
  bar_->raise();
  const int width = container_->width(), top = contentTop();
  animate(
      picture, kPushTime,
      [view = QPointer(view), isComing, width, top](double progress) {
        if (view) view->move(qRound(width * (isComing ? 1 - progress : progress)), top);
      },
      [picture] { picture->deleteLater(); });
}

void NavigationController::focusTop() const {
  if (window_) window_->focusFront();
}

}  // namespace orn
