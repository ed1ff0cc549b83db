#include "ScreensScript.h"

#include <chrono>

#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFrame>
#include <QtWidgets/QLabel>

#include "simulation/SampleCalibration.h"

namespace orn {
namespace {

/// No time but the simulated one passes meanwhile.
void settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

template <class Widget>
QStringList textsOf(const QWidget& within, const QString& name = {}) {
  QStringList all;
  for (const Widget* one : name.isEmpty() ? within.findChildren<Widget*>() : within.findChildren<Widget*>(name)) {
    if (one->isVisible() && !one->text().isEmpty()) all << one->text();
  }
  return all;
}

}  // namespace

std::string calibration(int row) {
  return std::string(row == 0 ? simulation::sampleAudiometerReply() : simulation::sampleEarphonesReply());
}

ScreensScript::ScreensScript() {
  Platform::setCurrent(machine.platform());
  machine.audioSession->setOutputVolume(kUsersVolume);
  for (const char* key : {"SERVICEHOST", "APPKEY", "USERID"}) machine.userDefaults->setValue(key, std::string("given"));
  machine.userDefaults->setValue("USERNAME", std::string("小明"));
  window = std::make_unique<NavigationWindow>();
  window->show();
  select = ORNSelectTypeViewController::init();
  select->showSelectTypeViewControllerByNavigation(window->navigation(), std::nullopt, {}, std::nullopt, {});
  run();
}

ScreensScript::~ScreensScript() {
  select.reset();
  window.reset();
  settle();
  Platform::clearCurrent();
}

void ScreensScript::answers(const std::optional<std::string>& body, int milliseconds) {
  const std::optional<Error> error = body ? std::nullopt : std::optional(Error{"transport", 7, "gone"});
  machine.urlSession->script("", {body, error}, std::chrono::milliseconds(milliseconds));
}

void ScreensScript::plug(int row) {
  auto& session = *machine.audioSession;
  row == 0 ? session.plugAudiometer("KV50-1234", "AA:BB:CC:DD:EE:FF") : session.plugEarphones();
  run();
}

void ScreensScript::run(double seconds) {
  machine.virtualTime->runFor(std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)));
  settle();
}

QString ScreensScript::title() const { return textsOf<QLabel>(*window, "title").join('|'); }

QString ScreensScript::alert() const {
  QStringList parts;
  for (const QFrame* card : window->findChildren<QFrame*>("card")) {
    parts << textsOf<QLabel>(*card) << textsOf<QAbstractButton>(*card);
  }
  return parts.join('|');
}

QStringList ScreensScript::texts() const { return textsOf<QLabel>(*window); }

QAbstractButton* ScreensScript::button(const QString& name) const {
  QAbstractButton* newest = nullptr;  // an alert's goes before one that it covers
  for (QAbstractButton* one : window->findChildren<QAbstractButton*>()) {
    if (one->isVisible() && one->accessibleName() == name) newest = one;
  }
  return newest;
}

bool ScreensScript::sounds(double seconds) {
  const auto heard = std::make_shared<bool>(false);
  machine.audioOutput->addListener([heard](std::int64_t, std::span<const std::int16_t> samples) {
    for (const std::int16_t one : samples) *heard = *heard || one != 0;
  });
  run(seconds);
  return *heard;
}

void ScreensScript::clickAt(QPoint place) {
  QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, place);
  settle();
}

void ScreensScript::click(const QWidget* widget) {
  ASSERT_TRUE(widget && widget->isVisible());
  clickAt(widget->mapTo(window.get(), widget->rect().center()));
}

void ScreensScript::click(const QString& buttonName) {
  SCOPED_TRACE(buttonName.toStdString());
  click(button(buttonName));
}

void ScreensScript::touch(const QWidget* widget) {
  static QPointingDevice* screen = QTest::createTouchDevice();
  const QPoint place = widget->mapTo(window.get(), widget->rect().center());
  QTest::touchEvent(window.get(), screen).press(0, place, window.get());
  QTest::touchEvent(window.get(), screen).release(0, place, window.get());
  settle();
}

void ScreensScript::key(Qt::Key key) {
  QTest::keyClick(window->windowHandle(), key);
  settle();
}

void ScreensScript::openTest(int row) {
  plug(row);
  answers(calibration(row));
  clickRow(row);
  run();
}

void ScreensScript::startTest(int row) {
  openTest(row);
  click(QString("准备好了，开始测试"));
}

}  // namespace orn
