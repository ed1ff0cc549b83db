#include "hearing-app-tools/ScreenshotScript.h"

#include <chrono>
#include <stdexcept>
#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>

#include "hearing-app/CheckedDevices.h"
#include "simulation/calibration/SampleCalibration.h"

namespace orn {
namespace {

constexpr double kToRest = 1.5;  // longer than any animation
constexpr double kLongestEar = 3600;

[[noreturn]] void failFor(const QString& what) { throw std::runtime_error(what.toStdString()); }

void mouse(QWidget* target, QEvent::Type type, QPoint at) {
  const auto buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
  QMouseEvent event(type, at, target->mapToGlobal(at), Qt::LeftButton, buttons, Qt::NoModifier);
  QCoreApplication::sendEvent(target, &event);
}

}  // namespace

ScreenshotScript::ScreenshotScript(const ScreenSize& screen, QString folder, const std::optional<Profile>& profile,
                                   const std::string& serviceHost)
    : screen_(screen), folder_(std::move(folder)) {
  machine_.userDefaults->setValue(kServiceHostDefault, serviceHost);
  machine_.userDefaults->setValue(kCheckedDevicesDefault,
                                  std::string("AA:BB:CC:DD:EE:FF\nHeadphones Wired Headphones\n"));
  start(profile);
}

void ScreenshotScript::start(const std::optional<Profile>& profile) {
  host_ = std::make_unique<HostApplication>(machine_.platform(), profile);
  listener_ = std::make_unique<ScreenListener>(*machine_.audioOutput, *host_, sampleListener());
  host_->window().resize(screen_.points);
}

void ScreenshotScript::reopen() {
  listener_.reset();
  host_.reset();
  start({});
  open();
}

void ScreenshotScript::answer(const std::string& addressPart, const std::optional<std::string>& body,
                              std::chrono::milliseconds delay) {
  const std::optional<Error> error = body ? std::nullopt : std::optional(Error{"transport", 7, "unreachable"});
  machine_.urlSession->script(addressPart, {body, error}, delay);
}

void ScreenshotScript::answerAll(const std::string& tests) {
  answer("", R"({"rspCode": 0})");
  answer("/user/acquireListenTest", R"({"rspCode": 0, "listenTests": )" + tests + "}");
  const bool hasAudiometer = ORNHearingTest::getKV50Mac().has_value();
  answer("/user/findSdkDeviceValue",
         simulation::sampleReply(hasAudiometer ? OutputPath::Audiometer : OutputPath::Earphones));
}

void ScreenshotScript::settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

void ScreenshotScript::open() {
  host_->open();
  settle();  // exposes the window; run() then does what waits for its first frame
  run(kToRest);
}

void ScreenshotScript::run(double seconds) {
  settle();
  machine_.virtualTime->runFor(std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)));
  settle();
}

QAbstractButton* ScreenshotScript::button(const QString& name) const {
  QAbstractButton* newest = nullptr;  // the button of an alert goes before one that it covers
  for (QAbstractButton* one : host_->window().findChildren<QAbstractButton*>()) {
    if (one->isVisible() && one->accessibleName() == name) newest = one;
  }
  if (!newest) failFor("there is no button " + name);
  return newest;
}

void ScreenshotScript::press(const QString& buttonName) {
  button(buttonName)->click();
  run(kToRest);
}

void ScreenshotScript::holdDown(const QString& buttonName) {
  QAbstractButton* held = button(buttonName);
  mouse(held, QEvent::MouseButtonPress, held->rect().center());
}

void ScreenshotScript::letGo(const QString& buttonName) {
  QAbstractButton* held = button(buttonName);
  mouse(held, QEvent::MouseButtonRelease, held->rect().center());
}

void ScreenshotScript::key(Qt::Key key) {
  QWidget* target = host_->window().focusWidget();
  if (!target) failFor(QStringLiteral("nothing has the keyboard"));
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &event);
  }
}

void ScreenshotScript::pressAt(QPoint place) {
  QWidget* target = host_->window().childAt(place);
  if (!target) failFor(QStringLiteral("there is nothing to press"));
  const QPoint inside = target->mapFrom(&host_->window(), place);
  mouse(target, QEvent::MouseButtonPress, inside);
  mouse(target, QEvent::MouseButtonRelease, inside);
  run(kToRest);
}

void ScreenshotScript::type(const QString& fieldName, const QString& text) {
  for (QLineEdit* one : host_->window().findChildren<QLineEdit*>()) {
    if (one->isVisible() && one->accessibleName() == fieldName) return one->setText(text);
  }
  failFor("there is no field " + fieldName);
}

bool ScreenshotScript::sees(const QString& text) const {
  for (const QLabel* one : host_->window().findChildren<QLabel*>()) {
    if (one->isVisible() && one->text().contains(text)) return true;
  }
  return false;
}

void ScreenshotScript::runUntilSeen(const QString& text) {
  const auto isSeen = [&] { return sees(text); };
  if (!machine_.virtualTime->runUntil(isSeen, std::chrono::seconds(static_cast<int>(kLongestEar)))) {
    failFor("the screen never says " + text);
  }
  run(kToRest);
}

void ScreenshotScript::shoot(const QString& name) {
  settle();
  QImage picture(screen_.pixels(), QImage::Format_RGB32);
  picture.setDevicePixelRatio(screen_.ratio);
  picture.fill(Qt::white);
  host_->window().render(&picture);
  const QString file =
      QStringLiteral("%1-%2x%3.png").arg(name).arg(screen_.pixels().width()).arg(screen_.pixels().height());
  if (!picture.save(QDir(folder_).filePath(file))) failFor("can't write " + QDir(folder_).filePath(file));
}

}  // namespace orn
