#include "hearing-app/HostApplication.h"

#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QAbstractButton>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

#include "hearing-app/EarphoneCache.h"
#include "hearing-app/FirstFrame.h"
#include "hearing-app/ProfileScreen.h"
#include "hearing-app/ServiceNotices.h"
#include "hearing-app/WatchedURLSession.h"
#include "simulation/SessionCalibration.h"

namespace orn {
namespace {

/// Of this application at the service, unless the settings hold another one.
constexpr auto kAppKey = "hearing-app";

std::optional<std::string> setting(const char* key) {
  const auto value = Platform::current().userDefaults->value(key);
  const auto* text = value ? std::get_if<std::string>(&*value) : nullptr;
  return text && !text->empty() ? std::optional(*text) : std::nullopt;
}

}  // namespace

HostApplication::HostApplication(Platform platform, const std::optional<Profile>& profile) {
  platform.urlSession = std::make_shared<WatchedURLSession>(
      platform.urlSession, platform.runLoop,
      [this, life = std::weak_ptr(life_)](const std::string& url, const URLReply& reply) {
        if (life.lock()) replied(url, reply);
      });
  Platform::setCurrent(std::move(platform));
  clearEarphoneCache();
  ORNHearingTest::registerAppKey(setting(kAppKeyDefault).value_or(kAppKey));
  if (profile) keepProfile(*profile);
  delegate_ = std::make_shared<ORNSelectTypeDelegate>();
  delegate_->buyButtonClick = [this](QWidget*) { openShop(); };
  window_ = std::make_unique<NavigationWindow>();
  window_->setWindowTitle(QStringLiteral("听力测试"));
}

HostApplication::~HostApplication() {
  life_.reset();
  selection_.reset();
  window_.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // views that look at the platform as they go
  Platform::clearCurrent();
}

void HostApplication::open(const std::function<void()>& whenShown) {
  if (isProfileKept()) {
    openSelection();
  } else {
    askForProfile();
  }
  window_->show();
  afterFirstFrame(*window_, [this, whenShown] {
    if (whenShown) whenShown();
    if (isProfileKept()) meetService();
  });
}

void HostApplication::askForProfile() {
  const auto screen = ProfileScreen::init();
  screen->onDone = [this, weak = std::weak_ptr(screen)](const Profile& profile) {
    keepProfile(profile);
    openSelection();
    meetService();
    if (const auto asked = weak.lock()) asked->dismiss();
  };
  window_->present(NavigationController::initWithRootViewController(screen), window_->navigation());
}

void HostApplication::openSelection() {
  selection_ = ORNSelectTypeViewController::init();
  selection_->setDelegate(delegate_);
  selection_->showSelectTypeViewControllerByNavigation(window_->navigation(), std::nullopt, {},
                                                       QStringLiteral("测试记录"), [weak = std::weak_ptr(selection_)] {
                                                         if (const auto screen = weak.lock()) screen->gotolishi();
                                                       });
}

void HostApplication::meetService() {
  if (const auto notice = noticeOfMissingHost()) {
    say(*notice);
  } else {
    registerProfile();
  }
}

void HostApplication::registerProfile() {
  registerKeptProfile([this, life = std::weak_ptr(life_)](const std::optional<Error>& error) {
    if (error && life.lock()) say(noticeOfRegistration(*error));
  });
}

void HostApplication::openShop() {
  const auto address = setting(kShopURLDefault);
  const QUrl url(QString::fromStdString(address.value_or("")), QUrl::StrictMode);
  if (!address) return say(QStringLiteral("还没有设置购买页面的网址。"));
  const bool isWebPage = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
  if (!isWebPage || !QDesktopServices::openUrl(url)) {
    say(QStringLiteral("打不开购买页面：\n") + QString::fromStdString(*address));
  }
}

void HostApplication::replied(const std::string& url, const URLReply& reply) {
  if (isCalibrationReply(url)) {
    clearEarphoneCache();
    if (reply.body && !isCalibrated()) return refuseTest();
  }
  if (const auto notice = noticeOfReply(url, reply)) say(*notice);
}

bool HostApplication::isCalibrated() const {
  const auto test = std::dynamic_pointer_cast<ORNManualHearingTest>(session());
  if (!test) return true;
  const auto path = test->KV50MAC() ? simulation::OutputPath::Audiometer : simulation::OutputPath::Earphones;
  return hasRecords(*test, path);
}

/// An audiometer's test would go on in silence and find thresholds in it. It has not been presented yet; that of
/// earphones has, and closes itself at its first tone.
void HostApplication::refuseTest() {
  selection_->setTestVC(nullptr);
  say(QStringLiteral("测听服务器没有这台设备的校准数据，无法测试。"));
}

void HostApplication::say(const QString& message) {
  window_->showAlert({0, QStringLiteral("温馨提示"), message, {QStringLiteral("好的")}, 0});
}

std::shared_ptr<ORNHearingTest> HostApplication::session() const {
  const auto screen = selection_ ? selection_->testVC() : nullptr;
  return screen ? screen->test() : nullptr;
}

QAbstractButton* HostApplication::heardButton() const {
  for (QAbstractButton* one : window_->findChildren<QAbstractButton*>()) {
    if (one->isVisible() && one->accessibleName() == QStringLiteral("听到了")) return one;
  }
  return nullptr;
}

}  // namespace orn
