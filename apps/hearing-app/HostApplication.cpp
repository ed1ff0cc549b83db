#include "hearing-app/HostApplication.h"

#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QAbstractButton>

#include <ORNHearingTestSDK/common/DefaultsReading.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/ServiceHost.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/screens/ChannelCheckScreen.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>
#include <ORNHearingTestSDK/screens/ServiceNotices.h>

#include "hearing-app/CheckedDevices.h"
#include "hearing-app/ClosingDelay.h"
#include "hearing-app/FirstFrame.h"
#include "hearing-app/ProfileScreen.h"
#include "hearing-app/ResultKeeper.h"
#include "hearing-app/ServiceScreen.h"
#include "hearing-app/SimulationBanner.h"

namespace orn {
namespace {

/// This application's key at the service, unless the settings hold another one.
constexpr auto kAppKey = "hearing-app";

std::optional<std::string> setting(const char* key) {
  auto text = textValue(Platform::current().userDefaults->value(key));
  return text == "" ? std::nullopt : text;
}

void keepHost(const std::string& host) {
  UserDefaults& defaults = *Platform::current().userDefaults;
  defaults.setValue(kServiceHostDefault, host);
  defaults.synchronize();
}

}  // namespace

HostApplication::HostApplication(Platform platform, const std::optional<Profile>& profile, Mode mode) : mode_(mode) {
  Platform::setCurrent(std::move(platform));
  results_ = std::make_shared<ResultKeeper>([this](const QString& message) { say(message); });
  ORNHearingTest::registerAppKey(setting(kAppKeyDefault).value_or(kAppKey));
  if (profile) keepProfile(*profile);
  delegate_ = std::make_shared<ORNSelectTypeDelegate>();
  delegate_->buyButtonClick = [this](QWidget*) { openShop(); };
  delegate_->calibrationFailed = [this](const Error& error) { say(noticeOfCalibration(error)); };
  delegate_->shouldPresentTest = [this](const auto& test) {
    watch(*test);
    return !offersCheck(test);
  };
  window_ = std::make_unique<NavigationWindow>();
  window_->setWindowTitle(mode == Mode::Real ? QStringLiteral("听力测试") : QStringLiteral("听力测试（模拟演示）"));
  if (mode == Mode::Simulation) new SimulationBanner(*window_);
  delayClosing();
}

HostApplication::~HostApplication() {
  life_.reset();
  results_.reset();
  closing_.reset();
  selection_.reset();
  window_.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // views, whose destructors use the platform
  Platform::clearCurrent();
}

void HostApplication::open(const std::function<void()>& whenShown) {
  // A simulation starts its service once the window shows.
  if (mode_ == Mode::Real && !isServiceHostSet()) {
    askForService();
  } else if (!isProfileKept()) {
    askForProfile();
  } else {
    openSelection();
  }
  window_->show();
  afterFirstFrame(*window_, [this, whenShown] {
    if (whenShown) whenShown();
    if (selection_) meetService();
  });
}

std::shared_ptr<ServiceScreen> HostApplication::makeServiceScreen() {
  const auto screen = ServiceScreen::initWithHost(setting(kServiceHostDefault).value_or(""));
  if (onOtherMode) screen->onSimulation = [this] { onOtherMode(); };
  return screen;
}

void HostApplication::askForService() {
  const auto screen = makeServiceScreen();
  screen->onDone = [this, weak = std::weak_ptr(screen)](const std::string& host) {
    keepHost(host);
    const auto asked = weak.lock();
    if (!isProfileKept()) return askForProfile(asked->navigationController());
    goOn();
    asked->dismiss();
  };
  window_->present(NavigationController::initWithRootViewController(screen), window_->navigation());
}

/// On top of the question before it, to which the user can go back.
void HostApplication::askForProfile(const std::shared_ptr<NavigationController>& before) {
  const auto screen = ProfileScreen::init();
  screen->onDone = [this, weak = std::weak_ptr(screen)](const Profile& profile) {
    keepProfile(profile);
    goOn();
    if (const auto asked = weak.lock()) asked->dismiss();
  };
  if (before) return before->push(screen);
  window_->present(NavigationController::initWithRootViewController(screen), window_->navigation());
}

/// Everything has been asked.
void HostApplication::goOn() {
  openSelection();
  meetService();
}

void HostApplication::openSelection() {
  selection_ = ORNSelectTypeViewController::init();
  selection_->setDelegate(delegate_);
  std::optional<QString> left;
  Screen::Action leftAction;
  if (mode_ == Mode::Real) {
    left = QStringLiteral("服务器");
    leftAction = [this] { changeService(); };
  } else if (onOtherMode) {
    left = QStringLiteral("退出演示");
    leftAction = [this] { onOtherMode(); };
  }
  selection_->showSelectTypeViewControllerByNavigation(window_->navigation(), left, leftAction,
                                                       QStringLiteral("测试记录"), [weak = std::weak_ptr(selection_)] {
                                                         if (const auto screen = weak.lock()) screen->gotolishi();
                                                       });
}

void HostApplication::changeService() {
  const auto screen = makeServiceScreen();
  screen->onDone = [this, weak = std::weak_ptr(screen)](const std::string& host) {
    keepHost(host);
    weak.lock()->dismiss();
    meetService();
  };
  window_->navigation()->push(screen);
}

/// In a simulation there is nothing to hear.
bool HostApplication::offersCheck(const std::shared_ptr<ORNHearingTestViewController>& test) {
  const auto owner = test->test();  // the screen's own, kept alive for as long as this takes
  const ORNManualHearingTest* session = owner ? owner->manualTest() : nullptr;
  if (!session || mode_ == Mode::Simulation) return false;
  const std::string device = deviceOf(*session);
  if (isDeviceChecked(device)) return false;
  const auto check = ChannelCheckScreen::initWithTest(*session);
  check->onDone = [test, device, weak = std::weak_ptr(check)](std::optional<ChannelFinding> finding) {
    if (finding != ChannelFinding::Silent) keepCheckedDevice(device);
    if (const auto asked = weak.lock()) asked->navigationController()->push(test);
  };
  selection_->present(NavigationController::initWithRootViewController(check));
  return true;
}

void HostApplication::meetService() {
  registerProfile();
  offerUnsentResults();
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

/// Its result is kept until the service has it.
void HostApplication::watch(ORNHearingTestViewController& test) {
  const auto kept = std::make_shared<ResultKeeper::Ended>();
  test.onComplete = [keeper = std::weak_ptr(results_), kept](const FinishedTest& finished) {
    if (const auto results = keeper.lock()) *kept = results->keep(finished);
  };
  test.onSubmitted = [kept](const std::optional<Error>& error) {
    if (*kept) (*kept)(error);
  };
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
