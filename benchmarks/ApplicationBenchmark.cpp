// The application's start to its first complete frame, beside a process with an empty window and one whose window shows
// a word, for which fonts are loaded; a long history until it shows, beside the parsing of its JSON alone; and the
// painting of one of its rows, beside an empty one of its size. With the word "start", the start alone.

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <nlohmann/json.hpp>

#include <QtGui/QImage>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNTestHistoryViewController.h>

#include "benchmarks/Comparison.h"

namespace {

using namespace orn;
using namespace orn::bench;

/// From the start of the process to the line by which it says that its frame is complete.
double start(const std::string& command) {
  FILE* output = nullptr;
  std::array<char, 16> line{};
  const double time = wallSeconds([&] {
    output = popen(command.c_str(), "r");
    if (output && !std::fgets(line.data(), line.size(), output)) line[0] = 0;
  });
  if (output) pclose(output);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));  // in which the display clears away the window
  return line[0] ? time : NAN;
}

void compareStart() {
  const Work app{"start of hearing-app to its first frame",
                 [] { return start("exec " ORN_HEARING_APP " --simulate --end-at-first-frame 2>/dev/null"); }};
  const Work window{"start of an empty window", [] { return start("exec " ORN_EMPTY_WINDOW " 2>/dev/null"); }};
  const Work label{"start of a window with one word",
                   [] { return start("exec " ORN_EMPTY_WINDOW " 听力测试 2>/dev/null"); }};
  compare(app, window, 15);
  compare(app, label, 15);
  compare(label, window, 15);
}

constexpr int kTests = 10'000;

/// As the service sends it, with everything that it stores of a test.
const std::string& historyReply() {
  static const std::string reply = [] {
    nlohmann::json tests = nlohmann::json::array();
    for (int number = 0; number < kTests; ++number) {
      nlohmann::json test{{"id", std::to_string(number)}, {"createDate", 1.7e12 + number}, {"base", 0}};
      for (const char* ear : {"left", "right"}) {
        for (const char* hz : {"125", "250", "500", "1000", "2000", "4000", "8000"}) {
          test[std::string(ear) + hz + "hz"] = std::to_string(15 + 5 * (number % 12));
        }
      }
      for (const char* key : {"leftScore", "rightScore", "score", "leftResult_d", "rightResul_d"}) test[key] = 0.0;
      for (const char* key : {"noise", "grade", "versions", "personID", "personName", "leftResult", "rightResult"}) {
        test[key] = nullptr;
      }
      tests.push_back(std::move(test));
    }
    return nlohmann::json{{"rspCode", 0}, {"listenTests", std::move(tests)}}.dump();
  }();
  return reply;
}

/// A machine whose service has the long history.
struct Machine {
  Machine() {
    for (const char* key : {"SERVICEHOST", "APPKEY", "USERID"}) {
      simulated.userDefaults->setValue(key, std::string("given"));
    }
    simulated.urlSession->script("", {historyReply(), std::nullopt});
    Platform::setCurrent(simulated.platform());
  }
  ~Machine() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Platform::clearCurrent();
  }
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  std::shared_ptr<ORNTestHistoryViewController> show(NavigationWindow& window) {
    auto screen = ORNTestHistoryViewController::init();
    window.show();
    window.navigation()->push(screen);
    simulated.virtualTime->runFor(std::chrono::milliseconds(20));
    return screen;
  }

  SimulatedPlatform simulated;
};

/// From the tap to the frame with its first rows.
double showHistory(Machine& machine) {
  NavigationWindow window;
  bool isShown = false;
  const double time = wallSeconds([&] {
    const auto screen = machine.show(window);
    window.grab();
    isShown = screen->tableView()->cellForRow({0, 0});
  });
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  return isShown ? time : NAN;
}

void compareRow(Machine& machine) {
  NavigationWindow window;
  const auto screen = machine.show(window);
  TableCell* cell = screen->tableView()->cellForRow({0, 0});
  if (!cell) return;
  QImage image(cell->size(), QImage::Format_RGB32);
  QWidget empty;
  empty.resize(cell->size());
  compare(often("row of the history, painted", [&] { cell->render(&image); }),
          often("an empty widget of its size", [&] { empty.render(&image); }));
}

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  compareStart();
  if (argc > 1 && std::string(argv[1]) == "start") return 0;
  QApplication application(argc, argv);
  Machine machine;
  compare(
      {"history of 10000 tests until it shows", [&] { return showHistory(machine); }},
      {"its JSON alone", [] { return wallSeconds([] { keep(nlohmann::json::parse(historyReply()).type_name()); }); }},
      9);
  compareRow(machine);
}
