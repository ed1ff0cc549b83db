#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

#include "Hands.h"
#include "simulation/calibration/SampleCalibration.h"

namespace orn {

inline constexpr float kUsersVolume = 0.25F;

/// The service's calibration for a device.
inline std::string calibration(int row) {
  return simulation::sampleReply(row == 0 ? OutputPath::Audiometer : OutputPath::Earphones);
}

/// The application's window on a simulated machine, with the device selection open, as a user sees and touches it. A
/// device is known by its row there: 0 the audiometer, 1 the earphones.
struct ScreensScript : Hands {
  ScreensScript() {
    Platform::setCurrent(machine.platform());
    machine.audioSession->setOutputVolume(kUsersVolume);
    auto& settings = *machine.userDefaults;
    for (const char* key : {"SERVICEHOST", "APPKEY", "USERID"}) settings.setValue(key, std::string("given"));
    settings.setValue("USERNAME", std::string("小明"));
    window = std::make_unique<NavigationWindow>();
    window->show();
    select = ORNSelectTypeViewController::init();
    select->showSelectTypeViewControllerByNavigation(window->navigation(), std::nullopt, {}, std::nullopt, {});
    run();
  }

  ~ScreensScript() override {
    select.reset();
    window.reset();
    settle();
    Platform::clearCurrent();
  }

  NavigationWindow& shown() const override { return *window; }

  /// What the service answers to every request from now on; nothing is a dead line.
  void answers(const std::optional<std::string>& body, int milliseconds = 10) {
    const std::optional<Error> error = body ? std::nullopt : std::optional(Error{"transport", 7, "gone"});
    machine.urlSession->script("", {body, error}, std::chrono::milliseconds(milliseconds));
  }

  void plug(int row) {
    auto& session = *machine.audioSession;
    row == 0 ? session.plugAudiometer("KV50-1234", "AA:BB:CC:DD:EE:FF") : session.plugEarphones();
    run();
  }

  void run(double seconds = 1) {
    machine.virtualTime->runFor(std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)));
    settle();
  }

  QAbstractButton* heardButton() const { return button("听到了"); }
  float volume() const { return machine.audioSession->outputVolume(); }
  std::size_t requests() const { return machine.urlSession->requests().size(); }

  /// Whether sound comes out of the machine within the next span.
  bool sounds(double seconds) {
    const auto heard = std::make_shared<bool>(false);
    machine.audioOutput->addListener([heard](std::int64_t, std::span<const std::int16_t> samples) {
      for (const std::int16_t one : samples) *heard = *heard || one != 0;
    });
    run(seconds);
    return *heard;
  }

  void clickRow(int row) { click(QString(row == 0 ? "听力检测仪" : "推荐耳机")); }

  /// Connects a device and opens its test, up to the instruction.
  void openTest(int row) {
    plug(row);
    answers(calibration(row));
    clickRow(row);
    run();
  }
  void startTest(int row) {
    openTest(row);
    click(QString("准备好了，开始测试"));
  }
  std::shared_ptr<ORNHearingTestViewController> test() const { return select->testVC(); }

  SimulatedPlatform machine;
  std::unique_ptr<NavigationWindow> window;
  std::shared_ptr<ORNSelectTypeViewController> select;
};

}  // namespace orn
