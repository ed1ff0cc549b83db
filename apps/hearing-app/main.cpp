#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>
#include <CLI/CLI.hpp>

#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

#include "EndingSignals.h"
#include "hearing-app/ChineseFont.h"
#include "hearing-app/HostApplication.h"
#include "hearing-app/OtherModes.h"
#include "hearing-app/QuitSignals.h"

namespace {

constexpr auto kIdentifier = "hearing-app";
constexpr auto kVersion = "1.0";

struct Options {
  std::string host, shop, screenshots;
  std::vector<std::string> screens{"375x667", "360x720@3"};
  bool simulates = false;
  bool endsAtFirstFrame = false;
};

std::string checkHost(const std::string& text) {
  const auto complaint = orn::complaintAboutServiceHost(text);
  return complaint ? "'" + text + "' can't be the service's host: " + *complaint : "";
}

std::string checkWebPage(const std::string& text) {
  return text.starts_with("http://") || text.starts_with("https://") ? ""
                                                                     : "'" + text + "' is not an http or https address";
}

/// WIDTHxHEIGHT or WIDTHxHEIGHT@RATIO.
std::optional<orn::ScreenSize> screenSize(const std::string& text) {
  int width = 0, height = 0, ratio = 1, read = 0;
  const int values = std::sscanf(text.c_str(), "%4dx%4d%n@%1d%n", &width, &height, &read, &ratio, &read);
  const bool isWhole = values >= 2 && static_cast<std::size_t>(read) == text.size();
  if (!isWhole || width < 320 || height < 320 || ratio < 1) return std::nullopt;
  return orn::ScreenSize{{width, height}, ratio};
}

std::string checkScreen(const std::string& text) {
  return screenSize(text) ? "" : "'" + text + "' is not a size like 375x667 or 360x720@3, of at least 320 points";
}

int takeScreenshots(int& argc, char** argv, const Options& options) {
  std::vector<orn::ScreenSize> screens;
  for (const std::string& text : options.screens) screens.push_back(*screenSize(text));
  return orn::takeScreenshots(argc, argv, options.screenshots, screens);
}

void keep(const orn::Platform& machine, const char* key, const std::string& value) {
  if (!value.empty()) machine.userDefaults->setValue(key, value);
}

/// What the command line sets is kept for the next start.
void keepSettings(const orn::Platform& machine, const Options& options) {
  keep(machine, orn::kServiceHostDefault, options.host);
  keep(machine, orn::kShopURLDefault, options.shop);
  machine.userDefaults->synchronize();
}

void toOtherMode() { QApplication::exit(orn::kOtherMode); }

int fail(const std::exception& error) {
  std::fprintf(stderr, "hearing-app: %s\n", error.what());
  return 1;
}

int runReal(const Options& options) {
  const orn::Platform machine = orn::linuxPlatform(std::make_shared<orn::QtRunLoop>(), kIdentifier, kVersion);
  keepSettings(machine, options);
  orn::HostApplication application(machine);
  application.onOtherMode = toOtherMode;
  application.open();
  return QApplication::exec();
}

/// Only its own service gets the results of a simulation.
int runSimulated(const Options& options) {
  return orn::runSimulated([&](const orn::Platform& machine) { keep(machine, orn::kShopURLDefault, options.shop); },
                           toOtherMode, options.endsAtFirstFrame);
}

/// One mode after the other, each with a machine and a window of its own, until the user closes one.
int runModes(const Options& options) {
  for (bool simulates = options.simulates;; simulates = !simulates) {
    const int code = simulates ? runSimulated(options) : runReal(options);
    if (code != orn::kOtherMode) return code;
  }
}

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value != '\0';
}

/// Without a display Qt would abort.
void requireDisplay() {
  if (!isSet("QT_QPA_PLATFORM") && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
    throw std::runtime_error("there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set");
  }
}

int run(int& argc, char** argv) {
  CLI::App app("The hearing test as an application: measure your hearing, see the audiogram, keep the records.",
               "hearing-app");
  Options options;
  auto* host = app.add_option("--host", options.host, "The service, as [https://]HOST[:PORT]; kept for the next time")
                   ->check(checkHost)
                   ->option_text("HOST[:PORT]");
  app.add_option("--shop", options.shop, "The page that sells audiometers; kept for the next time")
      ->check(checkWebPage)
      ->option_text("URL");
  auto* simulate = app.add_flag("--simulate", options.simulates,
                                "Brings its own service, a simulated audiometer and earphones, and a panel for them")
                       ->excludes(host);
  app.add_flag("--end-at-first-frame", options.endsAtFirstFrame)->needs(simulate)->group("");  // for measurements
  auto* screenshots =
      app.add_option("--screenshots", options.screenshots,
                     "Saves every screen and dialog as PNG in this folder, and a sheet of them, and exits")
          ->option_text("DIR")
          ->excludes(simulate);
  app.add_option("--screen", options.screens,
                 "A size for them in points, with pixels per point; may be given several times")
      ->check(checkScreen)
      ->option_text("WIDTHxHEIGHT[@RATIO]")
      ->needs(screenshots);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  if (!options.screenshots.empty()) return takeScreenshots(argc, argv, options);
  requireDisplay();
  orn::holdEndingSignals();
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QString::fromLatin1(kIdentifier));  // whose icon the desktop shows
  const orn::QuitSignals quitSignals;
  if (!orn::hasChineseFont()) {
    orn::sayThatChineseFontIsMissing();
    return 1;
  }
  return runModes(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    return fail(error);
  }
}
