#include "hearing-test/Pictures.h"

#include <cstdlib>

#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>
#include <ORNHearingTestSDK/screens/PrintableReport.h>

namespace orn {

struct Pictures::Toolkit {
  Toolkit() { Platform::setCurrent(machine.platform()); }
  ~Toolkit() { Platform::clearCurrent(); }
  char name[13] = "hearing-test";
  char* arguments[2] = {name, nullptr};
  int count = 1;
  QApplication application{count, arguments};
  SimulatedPlatform machine;
};

Pictures::Pictures() {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  // Qt's complaints about a missing desktop session don't belong among the program's messages.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  toolkit_ = std::make_unique<Toolkit>();
}

Pictures::~Pictures() = default;

std::string Pictures::audiogram(const FinishedTest& test, PictureFormat format) const {
  return audiogramPicture(test.left, test.right, format).toStdString();
}

std::string Pictures::report(const FinishedTest& test) const { return printableReport(test).toStdString(); }

}  // namespace orn
