#include "hearing-app/HostApplication.h"

#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QAbstractButton>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

#include "hearing-app/CalibrationFiles.h"
#include "hearing-app/ClosingDelay.h"
#include "hearing-app/FirstFrame.h"
#include "hearing-app/ProfileScreen.h"
#include "hearing-app/ResultKeeper.h"
#include "hearing-app/ServiceNotices.h"
#include "hearing-app/ServiceReplies.h"
#include "hearing-app/WatchedURLSession.h"

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
  platform.fileManager = std::make_shared<CalibrationFiles>(platform.fileManager);
  platform.urlSession = std::make_shared<WatchedURLSession>(
      platform.urlSession, platform.runLoop, judged, [this, life = std::weak_ptr(life_)](const URLRequest& request) {
        return life.lock() ? watch(request) : std::function<void(const URLReply&)>();
      });
  Platform::setCurrent(std::move(platform));
  results_ = std::make_shared<ResultKeeper>([this](const QString& message) { say(message); });
  ORNHearingTest::registerAppKey(setting(kAppKeyDefault).value_or(kAppKey));
  if (profile) keepProfile(*profile);
  delegate_ = std::make_shared<ORNSelectTypeDelegate>();
  delegate_->buyButtonClick = [this](QWidget*) { openShop(); };
  window_ = std::make_unique<NavigationWindow>();
  window_->setWindowTitle(QStringLiteral("听力测试"));
  delayClosing();
}

HostApplication::~HostApplication() {
  life_.reset();
  results_.reset();
  closing_.reset();
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
    offerUnsentResults();
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

void HostApplication::offerUnsentResults() {
  const auto count = results_->unsent();
  if (count == 0) return;
  const QString what = count == 1 ? QStringLiteral("上次测试的结果") : QStringLiteral("有%1次测试的结果").arg(count);
  window_->showAlert({0,
                      QStringLiteral("温馨提示"),
                      what + QStringLiteral("还没有提交到测试记录，现在提交吗？"),
                      {QStringLiteral("以后再说"), QStringLiteral("现在提交")},
                      0},
                     [this](int, int button) {
                       if (button == 1) results_->submitUnsent();
                     });
}

std::function<void(const URLReply&)> HostApplication::watch(const URLRequest& request) {
  switch (askedFor(request.url)) {
    case Asked::Submission:
      return results_->submissionBegins(request);
    case Asked::Calibration:
      return [this, life = std::weak_ptr(life_)](const URLReply& reply) {
        if (reply.error && life.lock()) say(noticeOfCalibration(*reply.error));
      };
    case Asked::Other:
    default:
      return {};
  }
}

void HostApplication::delayClosing() {
  closing_ = std::make_unique<ClosingDelay>(*window_);
  closing_->onClose = [this] {
    const auto test = session();
    if (test && !window_->asksBeforeClosing()) test->endTest();
  };
  closing_->isBusy = [this] { return results_->isSubmitting() && !window_->asksBeforeClosing(); };
  closing_->onHeld = [this] {
    window_->showAlert({0, QStringLiteral("温馨提示"), QStringLiteral("正在提交测试结果…"), {}});
  };
  results_->onIdle = [this] { closing_->release(); };
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
