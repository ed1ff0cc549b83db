#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include <QtCore/QPoint>
#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "hearing-app-tools/ScreenListener.h"
#include "hearing-app/HostApplication.h"
#include "hearing-app/OtherModes.h"

class QAbstractButton;

namespace orn {

/// Drives the application on a simulated machine in virtual time, with a scripted service and a virtual listener, and
/// takes pictures of it. An operation throws std::runtime_error if the button, field or text that it is about isn't
/// there.
class ScreenshotScript {
 public:
  /// Without a profile the application asks for one. The service answers nothing until answer() says what.
  ScreenshotScript(const ScreenSize& screen, QString folder, const std::optional<Profile>& profile,
                   const std::string& serviceHost = "service.example");

  /// What the service answers to requests whose address contains this part; no body stands for an unreachable service.
  void answer(const std::string& addressPart, const std::optional<std::string>& body,
              std::chrono::milliseconds delay = std::chrono::milliseconds(10));

  /// The service accepts everything, and answers with the sample calibration of what is plugged in and with this JSON
  /// list of tests.
  void answerAll(const std::string& tests);

  /// Opens the application and lets it make its first requests.
  void open();

  /// Ends the application and opens it again on the same machine.
  void reopen();

  void run(double seconds);

  /// Presses the button of this name and runs until what it started has come to rest.
  void press(const QString& buttonName);

  /// Clicks this place of the window, in points.
  void pressAt(QPoint place);

  /// Puts the mouse's button down on the button of this name, and lets it go.
  void holdDown(const QString& buttonName);
  void letGo(const QString& buttonName);

  /// A key to whatever has the keyboard.
  void key(Qt::Key key);

  void type(const QString& fieldName, const QString& text);

  /// Runs until an alert or a bar says this.
  void runUntilSeen(const QString& text);

  /// Saves what the window shows as NAME-WIDTHxHEIGHT.png.
  void shoot(const QString& name);

  bool sees(const QString& text) const;

  SimulatedUserDefaults& settings() { return *machine_.userDefaults; }
  SimulatedAudioSession& devices() { return *machine_.audioSession; }
  HostApplication& host() { return *host_; }
  ScreenListener& listener() { return *listener_; }

 private:
  QAbstractButton* button(const QString& name) const;
  static void settle();
  void start(const std::optional<Profile>& profile);

  const ScreenSize screen_;
  const QString folder_;
  SimulatedPlatform machine_;
  std::unique_ptr<HostApplication> host_;
  std::unique_ptr<ScreenListener> listener_;
};

}  // namespace orn
