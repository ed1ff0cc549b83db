// The hearing test inside somebody else's Qt application: a window of its own with a button, which opens the device
// selection beside it. With a file name it draws both into that file instead, and ends; this works without a display.

#include <cstdlib>
#include <memory>

#include <QtCore/QTimer>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QPushButton>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

namespace {

/// A child of the host's window, in which all screens of the test live. The selection keeps no host alive, so the
/// delegate is the caller's to keep.
orn::NavigationWindow* hearingTest(QWidget* parent, const std::shared_ptr<orn::ORNSelectTypeDelegate>& delegate) {
  auto* window = new orn::NavigationWindow(parent);
  window->setFixedSize(375, 667);
  const auto selection = orn::ORNSelectTypeViewController::init();
  selection->setDelegate(delegate);
  selection->showSelectTypeViewControllerByNavigation(window->navigation(), std::nullopt, {},
                                                      QStringLiteral("测试记录"), [weak = std::weak_ptr(selection)] {
                                                        if (const auto alive = weak.lock()) alive->gotolishi();
                                                      });
  return window;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1) setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication application(argc, argv);
  orn::Platform::setCurrent(orn::linuxPlatform(std::make_shared<orn::QtRunLoop>(), "org.example.diary", "1.0"));
  orn::ORNHearingTest::registerAppKey("the key of this application");
  const auto delegate = std::make_shared<orn::ORNSelectTypeDelegate>();
  int result = 0;
  {
    QMainWindow diary;
    diary.setWindowTitle(QStringLiteral("Diary"));
    auto* page = new QWidget;
    auto* row = new QHBoxLayout(page);
    auto* button = new QPushButton(QStringLiteral("Test my hearing"));
    row->addWidget(button);
    diary.setCentralWidget(page);
    QObject::connect(button, &QPushButton::clicked, page, [&] {
      button->setEnabled(false);
      row->addWidget(hearingTest(page, delegate));
    });
    diary.show();
    if (argc > 1) {
      button->click();
      QTimer::singleShot(500, &diary, [&] {
        result = diary.grab().save(QString::fromLocal8Bit(argv[1]), "PNG") ? 0 : 1;
        QApplication::quit();
      });
    }
    const int ended = QApplication::exec();
    if (result == 0) result = ended;
  }  // the windows go before the platform does
  orn::Platform::clearCurrent();
  return result;
}
