#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

#include "Hands.h"
#include "simulation/calibration/SampleCalibration.h"

namespace orn {

inline constexpr float kUsersVolume = 0.25F;
inline const QString kRows[] = {"听力检测仪", "推荐耳机"}, kReady = "准备好了，开始测试",
                     kOtherEar = "准备好了，继续测试";

/// The service's calibration for a device, which is known by its row in the selection: 0 the audiometer, 1 the
/// earphones.
inline std::string calibration(int row) {
  return simulation::sampleReply(row == 0 ? OutputPath::Audiometer : OutputPath::Earphones);
}

/// A user of a simulated machine, where time is virtual and replies are scripted.
struct MachineHands : Hands {
  explicit MachineHands(const SimulatedPlatform& itsMachine = SimulatedPlatform()) : machine(itsMachine) {
    machine.audioSession->setOutputVolume(kUsersVolume);
  }

  /// What the service answers from now on, to all requests or to those for one operation; nothing: a lost connection.
  void answers(const std::optional<std::string>& body, int milliseconds = 10, const std::string& operation = "") {
    const std::optional<Error> error = body ? std::nullopt : std::optional(Error{"transport", 7, "gone"});
    machine.urlSession->script(operation, {body, error}, std::chrono::milliseconds(milliseconds));
  }
  std::size_t requests(const std::string& operation = "") const {
    const auto isMeant = [&](const URLRequest& one) { return one.url.find(operation) != std::string::npos; };
    const auto& all = machine.urlSession->requests();
    return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), isMeant));
  }

  void plug(int row) {
    auto& session = *machine.audioSession;
    row == 0 ? session.plugAudiometer("KV60S", simulation::kSimulatedAddress) : session.plugEarphones();
    run();
  }
  void unplug() {
    machine.audioSession->unplug();
    run(0.1);
  }

  void run(double seconds = 1) {
    settle();
    machine.virtualTime->runFor(std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)));
    settle();
  }
  void clickAndWait(const QString& name) {
    click(name);
    run();
  }
  void until(const QString& text) {
    EXPECT_TRUE(machine.virtualTime->runUntil([&] { return sees(text); }, std::chrono::seconds(600)))
        << text.toStdString();
  }

  /// What is heard from the machine within the next span, in the words of its user.
  QString heard(double seconds) {
    const auto isHeard = std::make_shared<std::array<bool, 2>>();
    machine.audioOutput->addListener([isHeard](std::int64_t, std::span<const std::int16_t> samples) {
      for (std::size_t i = 0; i < samples.size(); ++i) (*isHeard)[i % 2] = (*isHeard)[i % 2] || samples[i] != 0;
    });
    run(seconds);
    const auto [left, right] = *isHeard;
    return left && right ? "有声音" : left ? "左" : right ? "右" : "没听到";
  }
  bool sounds(double seconds) { return heard(seconds) != "没听到"; }
  float volume() const { return machine.audioSession->outputVolume(); }

  SimulatedPlatform machine;
};

/// The library's screens, with the device selection open.
struct ScreensScript : MachineHands {
  ScreensScript() {
    Platform::setCurrent(machine.platform());
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
    closeWindow();
    Platform::clearCurrent();
  }

  void closeWindow() {
    select.reset();
    window.reset();
    settle();
  }

  NavigationWindow& shown() const override { return *window; }
  QAbstractButton* heardButton() const { return button("听到了"); }

  /// Connects a device and opens its test, up to the instruction.
  void openTest(int row) {
    plug(row);
    answers(calibration(row));
    clickAndWait(kRows[row]);
  }
  void startTest(int row) {
    openTest(row);
    click(kReady);
  }
  std::shared_ptr<ORNHearingTestViewController> test() const { return select->testVC(); }

  std::unique_ptr<NavigationWindow> window;
  std::shared_ptr<ORNSelectTypeViewController> select;
};

}  // namespace orn
