#pragma once

#include <QtGui/QGuiApplication>

#include "ScreensScript.h"
#include "hearing-app-tools/SimulatedHost.h"
#include "hearing-app/CheckedDevices.h"
#include "hearing-app/HostApplication.h"

namespace orn {

/// Notes that the user has checked the channels of both devices before.
inline void knowDevices(const SimulatedPlatform& machine) {
  machine.userDefaults->setValue(kCheckedDevicesDefault,
                                 std::string("AA:BB:CC:DD:EE:FF\nHeadphones Wired Headphones\n"));
}

/// A user of the application, which can be closed and opened again on the same machine.
struct ApplicationHands : MachineHands {
  using MachineHands::MachineHands;
  virtual Platform platform() const { return machine.platform(); }
  NavigationWindow& shown() const override { return host->window(); }

  void open(const std::optional<Profile>& profile = {}, Mode mode = Mode::Real,
            const std::function<void()>& whenShown = {}) {
    host.reset();
    host = std::make_unique<HostApplication>(platform(), profile, mode);
    host->onOtherMode = onOtherMode;
    host->open(whenShown);
    run();
  }

  std::function<void()> onOtherMode;
  std::unique_ptr<HostApplication> host;
};

/// The application with a scripted service and one device, which is known by its row.
struct ScriptedApplication : ApplicationHands {
  explicit ScriptedApplication(int testedRow) : row(testedRow) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
    machine.userDefaults->setValue("SERVICEHOST", std::string("service.example"));
    knowDevices(machine);
    answers(R"({"rspCode":0})");
    answers(calibration(row), 10, "/findSdkDeviceValue");
    open(sampleProfile());
    plug(row);
  }
  ~ScriptedApplication() override {
    host.reset();
    QGuiApplication::setQuitOnLastWindowClosed(true);
  }

  void startTest() {
    clickAndWait(kRows[row]);
    clickAndWait(kReady);
  }
  /// Takes a test in which nothing is heard.
  void takeTest() {
    startTest();
    until("右耳测试结束");
    clickAndWait(kOtherEar);
    until("测试结果");
  }

  const int row;
};

}  // namespace orn
