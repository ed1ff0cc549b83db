// A whole small product on the screens: a diary of somebody's hearing, a window of its own with a button that opens the
// hearing test beside it and a list of what was found. It tells the service who its user is, and its user what went
// wrong.
//
//   screens [--host HOST[:PORT]] [FILE]
//
// With a file name it draws its window into that file instead, and exits; this works without a display.

#include <chrono>
#include <cstdlib>
#include <memory>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDateTime>
#include <QtCore/QTimer>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>

#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>
#include <ORNHearingTestSDK/results/AppRegistration.h>
#include <ORNHearingTestSDK/results/HearingScore.h>
#include <ORNHearingTestSDK/results/UserProfile.h>
#include <ORNHearingTestSDK/screens/NavigationController.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>
#include <ORNHearingTestSDK/screens/ServiceNotices.h>

namespace {

using Failure = std::optional<orn::Error>;

class Diary : public QWidget {
 public:
  Diary() {
    setWindowTitle(QStringLiteral("Diary"));
    auto* column = new QVBoxLayout;
    column->addWidget(button_);
    column->addWidget(entries_);
    row_->addLayout(column);
    connect(button_, &QPushButton::clicked, this, &Diary::open);
  }

  /// Opens the device selection, in which all of the test takes place.
  void open() {
    button_->setEnabled(false);
    test_ = new orn::NavigationWindow(this);
    test_->setFixedSize(375, 667);
    row_->addWidget(test_);
    delegate_->calibrationFailed = [this](const orn::Error& error) { say(orn::noticeOfCalibration(error)); };
    delegate_->shouldPresentTest = [this](const auto& test) {
      test->onComplete = [this](const orn::FinishedTest& finished) { write(finished); };
      test->onSubmitted = [this](const Failure& error) {
        if (error) say(orn::noticeOfSubmission(*error, false));
      };
      return true;
    };
    const auto selection = orn::ORNSelectTypeViewController::init();
    selection->setDelegate(delegate_);
    const auto showHistory = [weak = std::weak_ptr(selection)] {
      if (const auto alive = weak.lock()) alive->gotolishi();
    };
    selection->showSelectTypeViewControllerByNavigation(test_->navigation(), std::nullopt, {},
                                                        QStringLiteral("测试记录"), showHistory);
    introduceUser();
  }

 private:
  /// The same at every start: the service replaces what it knows of an id.
  void introduceUser() {
    const auto birthday = std::chrono::sys_days(std::chrono::year(1980) / 3 / 5);
    const QPointer<Diary> self(this);
    orn::UserProfile::registerUser("diary-1", "Li", true, birthday, "13800000000", [self](const Failure& error) {
      if (self && error) self->say(orn::noticeOfRegistration(*error));
    });
  }

  void write(const orn::FinishedTest& test) {
    const auto loss = [](const orn::EarResult& ear) { return orn::HearingScore::computeEarTestResult(ear); };
    entries_->addItem(QStringLiteral("%1: left %2 dB, right %3 dB")
                          .arg(QDateTime::currentDateTime().toString(Qt::ISODate))
                          .arg(loss(test.left))
                          .arg(loss(test.right)));
  }

  void say(const QString& text) { test_->showAlert({0, QStringLiteral("温馨提示"), text, {QStringLiteral("好的")}}); }

  QHBoxLayout* row_ = new QHBoxLayout(this);
  QPushButton* button_ = new QPushButton(QStringLiteral("Test my hearing"));
  QListWidget* entries_ = new QListWidget;
  orn::NavigationWindow* test_ = nullptr;
  std::shared_ptr<orn::ORNSelectTypeDelegate> delegate_ = std::make_shared<orn::ORNSelectTypeDelegate>();
};

}  // namespace

int main(int argc, char** argv) {
  QCommandLineParser options;
  const QCommandLineOption host("host", "The service", "host", "127.0.0.1:8089");
  options.addOption(host);
  options.addPositionalArgument("file", "Draws the window into this file");
  QStringList arguments;
  for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
  options.process(arguments);
  const QStringList file = options.positionalArguments();
  if (!file.isEmpty()) setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication application(argc, argv);

  orn::Platform::setCurrent(orn::linuxPlatform(std::make_shared<orn::QtRunLoop>(), "org.example.diary", "1.0"));
  const auto settings = orn::Platform::current().userDefaults;
  settings->setValue(orn::kServiceHostDefault, options.value(host).toStdString());
  orn::registerAppKey("the key of this application");
  int result = 0;
  {
    Diary diary;
    diary.show();
    if (!file.isEmpty()) {
      diary.open();
      QTimer::singleShot(500, &diary, [&] {
        result = diary.grab().save(file.front(), "PNG") ? 0 : 1;
        QApplication::quit();
      });
    }
    const int ended = QApplication::exec();
    if (result == 0) result = ended;
  }  // the windows go before the platform does
  orn::Platform::clearCurrent();
  return result;
}
