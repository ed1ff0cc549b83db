// The application's window on a real X server, with a real keyboard's events and a real bus for screen readers.
#include <cstdlib>
#include <map>

#include <QtCore/QProcess>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/screens/ChessboardView.h>

#include "ScreensScript.h"
#include "XDesktop.h"

namespace orn {
namespace {

constexpr int kPatience = 20'000;  // milliseconds of a slow machine

/// Counts what comes from the server.
struct KeyCounter : QObject {
  int releases = 0;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched->isWindowType() && event->type() == QEvent::KeyRelease) ++releases;
    return false;
  }
};

class Desktop : public testing::Environment {
 public:
  void SetUp() override {
    xDesktop_ = std::make_unique<XDesktop>();
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("QT_SCALE_FACTOR", "1", 1);
    setenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1", 1);
    application_ = std::make_unique<QApplication>(argc_, argv_);
    application_->installEventFilter(&keys_);
  }
  void TearDown() override {
    application_.reset();
    xDesktop_.reset();
  }

  /// Returns when the window has had the key.
  void strike(const char* key) {
    const int before = keys_.releases;
    xDesktop_->strike(key);
    EXPECT_TRUE(QTest::qWaitFor([&] { return keys_.releases > before; }, kPatience)) << key;
    Hands::settle();
  }

  void takeFocus(QWidget& window) {
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window, kPatience));
    xDesktop_->focus(window.winId());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window, kPatience));
  }

 private:
  int argc_ = 1;
  char name_[13] = "desktop_test";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<XDesktop> xDesktop_;
  KeyCounter keys_;
  std::unique_ptr<QApplication> application_;
};

Desktop* desktop = nullptr;

/// A user with one threshold at all frequencies presses the space bar at each tone heard, until the ear is done.
void takeEarByKeyboard(ScreensScript& script, ChessboardView& board, int threshold) {
  for (int second = 0; second < 1000 && !board.isTestEnd(); ++second) {
    script.run(1);
    if (board.currentTestPoint().x() < 0 || board.isTestEnd()) continue;
    if (15 + 5 * board.currentTestPointBack().y() >= threshold) desktop->strike("space");
  }
  script.run(1.1);
}

TEST(Keyboard, AloneTakesAWholeTestInAWindowOfAnXServer) {
  ScreensScript script;
  desktop->takeFocus(*script.window);
  script.plug(1);
  script.answers(calibration(1));
  for (const char* key : {"Tab", "Down", "Return"}) desktop->strike(key);
  script.run(1.5);
  EXPECT_EQ(script.title(), "右耳测试");
  desktop->strike("Return");
  EXPECT_EQ(script.alert(), "");
  takeEarByKeyboard(script, *script.test()->rightChessView(), 35);
  EXPECT_NE(script.alert(), "") << "the last press answers nothing";
  script.run(1.1);
  desktop->strike("space");
  EXPECT_EQ(script.title(), "左耳测试");
  takeEarByKeyboard(script, *script.test()->chessView(), 20);
  EXPECT_EQ(script.title(), "测试结果");
  EXPECT_TRUE(script.sees("您的右耳的平均听力损失为35分贝") && script.sees("您的左耳的平均听力损失为20分贝"));
  desktop->strike("Return");
  script.run();
  desktop->strike("Tab");  // not beneath the large audiogram
  desktop->strike("Escape");
  script.run();
  for (const char* key : {"Tab", "Return"}) desktop->strike(key);
  script.run();
  EXPECT_EQ(script.title(), "选择设备");
}

/// What a screen reader finds in the window, from the top down, as "role|name" lines.
QStringList spoken() {
  QStringList lines;
  QProcess reader;
  const auto read = [&] {
    reader.start(QStringLiteral(ORN_SPOKEN_TREE), {QStringLiteral("desktop_test")});
    return QTest::qWaitFor([&] { return reader.state() == QProcess::NotRunning; }, kPatience) &&
           reader.exitStatus() == QProcess::NormalExit && reader.exitCode() == 0;
  };
  EXPECT_TRUE(QTest::qWaitFor(read, kPatience)) << "the application is on the bus";
  for (const QString& line : QString::fromUtf8(reader.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts)) {
    const QString name = line.section('|', 2);
    if (line.section('|', 0, 0).toInt() > 1 && !name.isEmpty()) lines << line.section('|', 1, 1) + "|" + name;
  }
  return lines;
}

TEST(Speech, TellsWhatIsSeenFromTheTopDown) {
  ScreensScript script;
  desktop->takeFocus(*script.window);
  const QStringList selection = spoken();
  EXPECT_EQ(selection.value(0), "label|选择设备") << selection.join('\n').toStdString();
  EXPECT_GE(selection.filter("听力检测仪").size(), 1);
  script.openTest(0);
  const QStringList instruction = spoken();
  EXPECT_TRUE(instruction.value(0).endsWith("|操作提示")) << instruction.join('\n').toStdString();
  EXPECT_EQ(instruction.filter("准备好了").size(), 1);
  EXPECT_EQ(instruction.filter("听力图").size() + instruction.filter("取消").size(), 0) << "beneath the alert";
  script.click("准备好了，开始测试");
  script.run(0.5);
  const QStringList test = spoken();
  EXPECT_EQ(test.filter("右耳听力图").size(), 1) << test.join('\n').toStdString();
  EXPECT_EQ(test.filter("左耳听力图").size(), 0) << "covered";
  EXPECT_LT(test.indexOf("push button|取消"), test.indexOf(test.filter("右耳听力图").value(0)));
  EXPECT_EQ(test.last(), "push button|听到了");
}

}  // namespace
}  // namespace orn

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  orn::desktop = new orn::Desktop;
  testing::AddGlobalTestEnvironment(orn::desktop);
  return RUN_ALL_TESTS();
}
