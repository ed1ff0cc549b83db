#include <cstdio>
#include <exception>
#include <memory>
#include <optional>

#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>

#include "hearing-app-tools/ScreenListener.h"
#include "hearing-app-tools/SimulatedHost.h"
#include "hearing-app-tools/SimulationPanel.h"
#include "hearing-app/HostApplication.h"
#include "hearing-app/OtherModes.h"

namespace orn {
namespace {

constexpr int kPanelGap = 16;

/// For measurements of a start, to which this line is the end.
void endAtFirstFrame() {
  std::puts("frame");
  std::fflush(stdout);
  QApplication::quit();
}

void placeBeside(const QWidget& window, QWidget& panel) {
  panel.move(window.frameGeometry().right() + kPanelGap, window.frameGeometry().top());
  panel.show();
}

}  // namespace

int runSimulated(const std::function<void(const Platform&)>& begin, const std::function<void()>& onOtherMode,
                 bool endsAtFirstFrame) {
  SimulatedHost simulated(std::make_shared<QtRunLoop>());
  HostApplication application(simulated.platform(), sampleProfile(), Mode::Simulation);
  application.onOtherMode = onOtherMode;
  ScreenListener listener(*simulated.machine().audioOutput, application, sampleListener());
  std::optional<SimulationPanel> panel;
  std::exception_ptr failure;  // carried past the event loop: nothing may be thrown through that
  application.open([&] {
    if (endsAtFirstFrame) return endAtFirstFrame();
    try {
      simulated.startService();
      begin(simulated.platform());
    } catch (...) {
      failure = std::current_exception();
      return QApplication::quit();
    }
    placeBeside(application.window(), panel.emplace(simulated, listener));
  });
  const int code = QApplication::exec();
  if (failure) std::rethrow_exception(failure);
  return code;
}

}  // namespace orn
