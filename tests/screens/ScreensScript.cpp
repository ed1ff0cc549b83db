#include "ScreensScript.h"

#include <chrono>

#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFrame>
#include <QtWidgets/QLabel>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/screens/NavigationController.h>

#include "simulation/SampleCalibration.h"

namespace orn {
namespace {

/// No time but the simulated one passes meanwhile.
void settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

}  // namespace

ScreensScript::ScreensScript(QSize size) {
  Platform::setCurrent(machine.platform());
  machine.audioSession->setOutputVolume(kUsersVolume);
  const std::pair<const char*, const char*> settings[] = {
      {"SERVICEHOST", "service.example"}, {"APPKEY", "key"}, {"USERID", "user"}, {"USERNAME", "小明"}};
  for (const auto& [key, value] : settings) machine.userDefaults->setValue(key, std::string(value));
  answers("", R"({"rspCode":0})");
  window = std::make_unique<NavigationWindow>();
  window->resize(size);
  window->show();
  select = ORNSelectTypeViewController::init();
  select->showSelectTypeViewControllerByNavigation(window->navigation(), std::nullopt, nullptr, std::nullopt, nullptr);
  run();
}

ScreensScript::~ScreensScript() {
  select.reset();
  window.reset();
  settle();
  Platform::clearCurrent();
}

void ScreensScript::answers(const std::string& addressPart, const std::optional<std::string>& body, int milliseconds) {
  const std::optional<Error> error = body ? std::nullopt : std::optional(Error{"transport", 7, "gone"});
  machine.urlSession->script(addressPart, {body, error}, std::chrono::milliseconds(milliseconds));
}

void ScreensScript::run(double seconds) {
  machine.virtualTime->runFor(std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)));
  settle();
}

QString ScreensScript::title() const {
  QString shown;
  for (const QLabel* one : window->findChildren<QLabel*>("title")) {
    if (one->isVisible()) shown = one->text();
  }
  return shown;
}

QString ScreensScript::alert() const {
  QStringList parts;
  for (const QFrame* card : window->findChildren<QFrame*>("card")) {
    if (!card->isVisible()) continue;
    for (const QLabel* one : card->findChildren<QLabel*>()) parts << one->text();
    for (const QAbstractButton* one : card->findChildren<QAbstractButton*>()) parts << one->text();
  }
  return parts.join('|');
}

QStringList ScreensScript::texts(const QWidget* within) const {
  QStringList all;
  for (const QLabel* one : (within ? within : window.get())->findChildren<QLabel*>()) {
    if (one->isVisible() && !one->text().isEmpty()) all << one->text();
  }
  return all;
}

bool ScreensScript::sees(const QString& part) const { return texts().join('\n').contains(part); }

QAbstractButton* ScreensScript::button(const QString& name) const {
  QAbstractButton* newest = nullptr;  // an alert's goes before one that it covers
  for (QAbstractButton* one : window->findChildren<QAbstractButton*>()) {
    if (one->isVisible() && (one->text() == name || one->accessibleName() == name)) newest = one;
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

void ScreensScript::key(int key) {
  QTest::keyClick(window->windowHandle(), static_cast<Qt::Key>(key));
  settle();
}

void ScreensScript::clickRow(int row) { click(row == 0 ? QStringLiteral("听力检测仪") : QStringLiteral("推荐耳机")); }

void ScreensScript::openTest(int row) {
  if (row == 0) {
    machine.audioSession->plugAudiometer("KV50-1234", kAddress);
    answers("findSdkDeviceValue", std::string(simulation::sampleAudiometerReply()));
  } else {
    machine.audioSession->plugEarphones();
    answers("findSdkDeviceValue", std::string(simulation::sampleEarphonesReply()));
  }
  run();
  clickRow(row);
  run();
}

void ScreensScript::startTest(int row) {
  openTest(row);
  click(QStringLiteral("准备好了，开始测试"));
}

std::string historyReply(int count) {
  nlohmann::json tests = nlohmann::json::array();
  for (int number = 0; number < count; ++number) {
    nlohmann::json test{{"createDate", 1767225600000.0 + 1000.0 * number}};
    for (const char* hz : {"125hz", "250hz", "8000hz"}) {
      test[std::string("left") + hz] = test[std::string("right") + hz] = "-1";
    }
    for (const char* hz : {"500hz", "1000hz", "2000hz", "4000hz"}) {
      test[std::string("right") + hz] = std::to_string(25 + 5 * (number % 10));
      test[std::string("left") + hz] = std::to_string(30 + 5 * (number % 10));
    }
    tests.push_back(std::move(test));
  }
  return nlohmann::json{{"rspCode", 0}, {"listenTests", tests}}.dump();
}

}  // namespace orn
