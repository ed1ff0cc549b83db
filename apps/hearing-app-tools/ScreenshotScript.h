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

namespace orn {

/// The application on a simulated machine in virtual time, a scripted service and a virtual listener: what can be done
/// with it, and its picture. Operations throw std::runtime_error where what they are for isn't there.
class ScreenshotScript {
 public:
  /// Without a profile the application asks for one. Nothing is answered until answer() says so.
  ScreenshotScript(const ScreenSize& screen, QString folder, const std::optional<Profile>& profile,
                   const std::string& serviceHost = "service.example");

  /// What the service answers to requests whose address has this part; nothing stands for an unreachable service.
  void answer(const std::string& addressPart, const std::optional<std::string>& body,
              std::chrono::milliseconds delay = std::chrono::milliseconds(10));

  /// The service answers everything well, with sample calibration of what is plugged in and this list of tests as
  /// JSON.
  void answerAll(const std::string& tests);

  /// Opens the application and lets it meet the service.
  void open();

  /// Ends the application and opens it again on the same machine.
  void reopen();

  void run(double seconds);

  /// Presses the button of this name and lets what it starts come to rest.
  void press(const QString& buttonName);

  /// Opens what a press on this place of the window opens, in points.
  void pressAt(QPoint place);

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
  static void settle();
  void start(const std::optional<Profile>& profile);

  const ScreenSize screen_;
  const QString folder_;
  SimulatedPlatform machine_;
  std::unique_ptr<HostApplication> host_;
  std::unique_ptr<ScreenListener> listener_;
};

}  // namespace orn
