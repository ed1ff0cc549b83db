#pragma once

#include <memory>
#include <optional>
#include <string>

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

/// The application with a scripted service and one device, which is known by its row; it can be closed and opened again
/// on the same machine.
struct ScriptedApplication : MachineHands {
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
  NavigationWindow& shown() const override { return host->window(); }

  void open(const std::optional<Profile>& profile = {}) {
    host.reset();
    host = std::make_unique<HostApplication>(machine.platform(), profile);
    host->open();
    run();
  }
  void clickAndWait(const QString& name) {
    click(name);
    run();
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
  std::unique_ptr<HostApplication> host;
};

}  // namespace orn
