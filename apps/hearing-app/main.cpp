#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <CLI/CLI.hpp>
#include <sys/wait.h>
#include <unistd.h>

#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>

#include "EndingSignals.h"
#include "hearing-app/FirstFrame.h"
#include "hearing-app/HostApplication.h"
#include "hearing-app/QuitSignals.h"
#include "hearing-app/ScreenListener.h"
#include "hearing-app/ScreenshotWalk.h"
#include "hearing-app/SimulatedHost.h"
#include "hearing-app/SimulationPanel.h"

namespace {

constexpr auto kIdentifier = "hearing-app";
constexpr auto kVersion = "1.0";
constexpr int kPanelGap = 16;

struct Options {
  std::string host, shop, screenshots;
  bool simulates = false;
  bool endsAtFirstFrame = false;
};

std::string checkHost(const std::string& text) {
  const auto complaint = orn::complaintAboutServiceHost(text);
  return complaint ? "'" + text + "' can't be the service's host: " + *complaint : "";
}

std::string checkWebPage(const std::string& text) {
  return text.starts_with("http://") || text.starts_with("https://") ? ""
                                                                     : "'" + text + "' is no http or https address";
}

void keep(const orn::Platform& machine, const char* key, const std::string& value) {
  if (!value.empty()) machine.userDefaults->setValue(key, value);
}

/// Settings that are given on the command line last.
void keepSettings(const orn::Platform& machine, const Options& options) {
  keep(machine, orn::kServiceHostDefault, options.host);
  keep(machine, orn::kShopURLDefault, options.shop);
  machine.userDefaults->synchronize();
}

/// The window shows all that it has to show.
void endAtFirstFrame() {
  std::puts("frame");
  std::fflush(stdout);
  QApplication::quit();
}

void placeBeside(const QWidget& window, QWidget& panel) {
  panel.move(window.frameGeometry().right() + kPanelGap, window.frameGeometry().top());
  panel.show();
}

int fail(const std::exception& error) {
  std::fprintf(stderr, "hearing-app: %s\n", error.what());
  return 1;
}

/// Within the event loop, which nothing may be thrown through.
void beginSimulation(orn::SimulatedHost& simulated, const Options& options) {
  try {
    simulated.startService();
    keepSettings(simulated.platform(), options);
  } catch (const std::exception& error) {
    QApplication::exit(fail(error));
  }
}

int runSimulated(const Options& options) {
  orn::SimulatedHost simulated(std::make_shared<orn::QtRunLoop>());
  orn::HostApplication application(simulated.platform(), orn::sampleProfile());
  orn::ScreenListener listener(*simulated.machine().audioOutput, application, orn::sampleListener());
  std::optional<orn::SimulationPanel> panel;
  application.open([&] {
    if (options.endsAtFirstFrame) return endAtFirstFrame();
    beginSimulation(simulated, options);
    placeBeside(application.window(), panel.emplace(simulated, listener));
  });
  return QApplication::exec();
}

int runReal(const Options& options) {
  const orn::Platform machine = orn::linuxPlatform(std::make_shared<orn::QtRunLoop>(), kIdentifier, kVersion);
  keepSettings(machine, options);
  orn::HostApplication application(machine);
  application.open();
  return QApplication::exec();
}

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value != '\0';
}

/// Where there is none, Qt would abort.
void requireDisplay() {
  if (!isSet("QT_QPA_PLATFORM") && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
    throw std::runtime_error("there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set");
  }
}

/// The ratio of a screen holds for a whole process.
int takeScreenshots(int& argc, char** argv, const std::string& folder, const orn::PhoneScreen& screen) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("QT_SCALE_FACTOR", std::to_string(screen.ratio).c_str(), 1);
  QApplication application(argc, argv);
  orn::walkForScreenshots(QString::fromStdString(folder), screen);
  return 0;
}

int takeAllScreenshots(int& argc, char** argv, const std::string& folder) {
  std::filesystem::create_directories(folder);
  const pid_t other = fork();
  if (other < 0) throw std::system_error(errno, std::generic_category(), "can't start a process");
  if (other == 0) return takeScreenshots(argc, argv, folder, {{360, 720}, 3});
  const int result = takeScreenshots(argc, argv, folder, {{375, 667}, 1});
  int status = 0;
  const bool isGone = waitpid(other, &status, 0) == other;
  return isGone && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? result : 1;
}

int run(int& argc, char** argv) {
  CLI::App app("The hearing test as an application: measure your hearing, see the audiogram, keep the records.",
               "hearing-app");
  Options options;
  app.add_option("--host", options.host, "The service, as [https://]HOST[:PORT]; kept for the next time")
      ->check(checkHost)
      ->option_text("HOST[:PORT]");
  app.add_option("--shop", options.shop, "The page that sells audiometers; kept for the next time")
      ->check(checkWebPage)
      ->option_text("URL");
  auto* simulate = app.add_flag("--simulate", options.simulates,
                                "Brings its own service, a simulated audiometer and earphones, and a panel for them");
  app.add_flag("--end-at-first-frame", options.endsAtFirstFrame)->needs(simulate)->group("");  // for measurements
  app.add_option("--screenshots", options.screenshots, "Saves every screen and dialog as PNG in this folder, and ends")
      ->option_text("DIR")
      ->excludes(simulate);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  if (!options.screenshots.empty()) return takeAllScreenshots(argc, argv, options.screenshots);
  requireDisplay();
  orn::holdEndingSignals();
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QString::fromLatin1(kIdentifier));  // whose icon the desktop shows
  const orn::QuitSignals quitSignals;
  return options.simulates ? runSimulated(options) : runReal(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    return fail(error);
  }
}
