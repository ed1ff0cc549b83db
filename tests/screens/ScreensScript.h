#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <QtCore/QPoint>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtWidgets/QAbstractButton>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

namespace orn {

/// The application's window on a simulated machine, with the device selection open, as a user sees it and touches it.
struct ScreensScript {
  static constexpr auto kAddress = "AA:BB:CC:DD:EE:FF";
  static constexpr float kUsersVolume = 0.25F;

  explicit ScreensScript(QSize size = {375, 667});
  ~ScreensScript();
  ScreensScript(const ScreensScript&) = delete;
  ScreensScript& operator=(const ScreensScript&) = delete;

  /// What the service answers to requests whose address holds the text; nothing is a dead line.
  void answers(const std::string& addressPart, const std::optional<std::string>& body, int milliseconds = 10);

  void run(double seconds = 1);

  // What the user sees.
  QString title() const;
  /// "title|message|button|..." of the alert on top; empty if there is none.
  QString alert() const;
  /// Texts of all labels that can be seen in a widget, or in the window.
  QStringList texts(const QWidget* within = nullptr) const;
  bool sees(const QString& part) const;
  QAbstractButton* button(const QString& name) const;
  QAbstractButton* heardButton() const { return button(QStringLiteral("听到了")); }
  float volume() const { return machine.audioSession->outputVolume(); }
  /// Whether sound came out of the machine within the next span.
  bool sounds(double seconds);

  // What the user does. Clicks go to whatever is on top at that place.
  void clickAt(QPoint place);
  void click(const QWidget* widget);
  void click(const QString& buttonName);
  void touch(const QWidget* widget);
  void key(int key);
  /// Clicks a row of the device selection: 0 the audiometer, 1 the earphones.
  void clickRow(int row);
  /// Connects a device and opens its test, up to the instruction.
  void openTest(int row);
  void startTest(int row);

  std::shared_ptr<ORNHearingTestViewController> test() const { return select->testVC(); }

  SimulatedPlatform machine;
  std::unique_ptr<NavigationWindow> window;
  std::shared_ptr<ORNSelectTypeViewController> select;
};

/// The history reply of the service for that many tests, each with its own thresholds.
std::string historyReply(int count);

}  // namespace orn
