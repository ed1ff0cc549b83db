#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QtWidgets/QAbstractButton>
#include <gmock/gmock.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

namespace orn {

inline constexpr float kUsersVolume = 0.25F;

/// The application's window on a simulated machine, with the device selection open, as a user sees and touches it. A
/// device is known by its row there: 0 the audiometer, 1 the earphones.
struct ScreensScript {
  ScreensScript();
  ~ScreensScript();

  /// What the service answers to every request from now on; nothing is a dead line.
  void answers(const std::optional<std::string>& body, int milliseconds = 10);
  void plug(int row);
  void run(double seconds = 1);

  QString title() const;
  /// "title|message|button|..." of the alert on top; empty if there is none.
  QString alert() const;
  QStringList texts() const;
  bool sees(const QString& part) const { return texts().join('\n').contains(part); }
  QAbstractButton* button(const QString& name) const;
  QAbstractButton* heardButton() const { return button("听到了"); }
  float volume() const { return machine.audioSession->outputVolume(); }
  std::size_t requests() const { return machine.urlSession->requests().size(); }
  /// Whether sound comes out of the machine within the next span.
  bool sounds(double seconds);

  // Clicks go to whatever is on top at that place.
  void clickAt(QPoint place);
  void click(const QWidget* widget);
  void click(const QString& buttonName);
  void touch(const QWidget* widget);
  void key(Qt::Key key);
  void clickRow(int row) { click(QString(row == 0 ? "听力检测仪" : "推荐耳机")); }
  /// Connects a device and opens its test, up to the instruction.
  void openTest(int row);
  void startTest(int row);
  std::shared_ptr<ORNHearingTestViewController> test() const { return select->testVC(); }

  SimulatedPlatform machine;
  std::unique_ptr<NavigationWindow> window;
  std::shared_ptr<ORNSelectTypeViewController> select;
};

/// The service's calibration for a device.
std::string calibration(int row);

}  // namespace orn
