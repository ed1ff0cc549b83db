#include <cstdlib>

#include <QtCore/QDirIterator>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/screens/ChannelCheckScreen.h>
#include <ORNHearingTestSDK/screens/ChessboardResultView.h>
#include <ORNHearingTestSDK/screens/ORNTestHistoryViewController.h>
#include <ORNHearingTestSDK/screens/ORNTestResultViewController.h>

#include "ScreensScript.h"

namespace orn {
namespace {

std::shared_ptr<ORNTestResultViewController> showResult(ScreensScript& script, EarResult left, EarResult right) {
  const auto screen = ORNTestResultViewController::init();
  screen->setLeft(std::move(left));
  screen->setRight(std::move(right));
  screen->showTestResultViewControllerByNavigation(script.window->navigation(), std::nullopt, {}, std::nullopt, {});
  script.run();
  return screen;
}

TEST(ResultScreen, LeavesOutFrequenciesThatTheLeftEarLacks) {
  using Columns = std::vector<std::string>;
  const std::tuple<EarResult, EarResult, int, int, Columns, double> table[] = {
      // left, right, their losses, the columns, and the row of the right ear's mark at 500 Hz
      {{{"500hz", "30"}, {"1000hz", "20"}}, {{"500hz", "40"}, {"1000hz", "41"}}, 25, 40, {"500hz", "1000hz"}, 10},
      {{{"500hz", "-1"}}, {{"500hz", "30"}}, 0, 0, {}, 8},
      {{{"500hz", "30"}}, {{"500hz", "-1"}}, 30, 0, {"500hz"}, 1},
      {{{"500hz", "91"}}, {{"1000hz", "80"}}, 91, 0, {"500hz"}, 2},
      {{{"500hz", "12"}}, {{"500hz", "120"}}, 12, 120, {"500hz"}, 26},
      {{}, {}, 0, 0, {}, 2},
  };
  for (const auto& [left, right, leftLoss, rightLoss, columns, row] : table) {
    ScreensScript script;
    const auto screen = showResult(script, left, right);
    EXPECT_EQ(script.title(), "测试结果");
    EXPECT_TRUE(script.sees(QString("您的右耳的平均听力损失为%1分贝，属于").arg(rightLoss))) << rightLoss;
    EXPECT_TRUE(script.sees(QString("您的左耳的平均听力损失为%1分贝，属于").arg(leftLoss))) << leftLoss;
    EXPECT_TRUE(script.sees("\n\n对上述结果如有疑问，请添加奥伦声客服QQ：6180339887 进行咨询。\n\n\n"));
    EXPECT_EQ(screen->chessView()->hzs(), columns);
    EXPECT_EQ(screen->pointAtHz(*screen->chessView(), "500hz", 3, false, 0), QPointF(3, row));
  }
}

TEST(ResultScreen, TapOpensTheAudiogramOverEverythingAndClosesItAfterAMoment) {
  ScreensScript script;
  const auto screen =
      showResult(script, {{"500hz", "30"}, {"1000hz", "20"}}, {{"250hz", "-1"}, {"500hz", "40"}, {"1000hz", "45"}});
  const QPointer<QWidget> full = screen->chessView();
  const auto isOpen = [&] { return script.window->childAt(9, 9) == full && script.window->childAt(187, 600) == full; };
  const auto afterwards = [&](double seconds) { return script.run(seconds), isOpen(); };
  EXPECT_TRUE(full->accessibleName().contains("右耳听力图：500赫兹40分贝，1000赫兹45分贝"));
  for (const bool byKey : {false, true}) {
    EXPECT_FALSE(isOpen());
    byKey ? script.key(Qt::Key_Space) : script.clickAt({187, 200});
    EXPECT_TRUE(afterwards(1));
    byKey ? script.key(Qt::Key_Return) : script.clickAt({187, 20});
    EXPECT_TRUE(afterwards(0.1));
    EXPECT_FALSE(afterwards(0.2));
  }
  script.key(Qt::Key_Space);
  script.key(Qt::Key_Tab);
  EXPECT_TRUE(full->hasFocus()) << "what it covers can't be reached";
  EXPECT_EQ(script.spoken(), QStringList(full->accessibleName()));
  script.key(Qt::Key_Escape);
  EXPECT_FALSE(afterwards(1));
  script.key(Qt::Key_Space);
  script.run();
  script.window->setStatusBarHeight(20);
  script.window->resize(400, 700);
  EXPECT_EQ(full->geometry(), QRect(0, 20, 400, 680)) << "beneath the device's own bar";
  script.window->resize(1, 1);
  EXPECT_EQ(full->geometry(), QRect(0, 20, 320, 460)) << "no window is smaller than a phone";
  script.window->setStatusBarHeight(0);
  script.window->resize(375, 667);
  script.key(Qt::Key_Escape);
  EXPECT_FALSE(afterwards(1));
  const QWidget* focus = script.window->focusWidget();
  EXPECT_TRUE(focus && focus != full && focus->accessibleName() == full->accessibleName()) << "the small one";
  script.clickAt({187, 200});
  EXPECT_TRUE(afterwards(1));
  screen->backClicked();  // closed while it is open
  EXPECT_TRUE(!afterwards(1) && script.title() == "选择设备");
}

TEST(ResultScreen, APhotoIsOfTheWholeScreenAndItsFailureIsNotTold) {
  ScreensScript script;
  const auto screen = showResult(script, {}, {});
  const QTemporaryDir home;
  for (const QByteArray& path : {QByteArray("/dev/null"), home.path().toUtf8()}) {
    for (const char* name : {"HOME", "XDG_CONFIG_HOME"}) setenv(name, path, 1);
    screen->takePhoto(nullptr);
    EXPECT_EQ(script.alert(), "");
  }
  QDirIterator photos(home.path(), {"*.png"}, QDir::Files, QDirIterator::Subdirectories);
  EXPECT_EQ(QImage(photos.next()).size(), QSize(375, 667));
}

/// Tests with a hearing loss of 25, 30, ... dB on the right and 5 dB more on the left, repeating after ten.
std::string historyReply(int count) {
  nlohmann::json tests = nlohmann::json::array();
  for (int number = 0; number < count; ++number) {
    nlohmann::json test{{"createDate", 1767225600000.0 + 1000.0 * number}};
    for (const std::string hz : {"125hz", "250hz", "8000hz"}) test["left" + hz] = test["right" + hz] = "-1";
    for (const std::string hz : {"500hz", "1000hz", "2000hz", "4000hz"}) {
      test["right" + hz] = std::to_string(25 + 5 * (number % 10));
      test["left" + hz] = std::to_string(30 + 5 * (number % 10));
    }
    tests.push_back(std::move(test));
  }
  return nlohmann::json{{"rspCode", 0}, {"listenTests", tests}}.dump();
}

/// Opens the history from a result; the service answers after a moment.
TableView* openHistory(ScreensScript& script, const std::optional<std::string>& reply) {
  script.answers(reply);
  showResult(script, {}, {})->gotolishi();
  script.run();
  EXPECT_EQ(script.title(), "测试记录");
  return std::dynamic_pointer_cast<ORNTestHistoryViewController>(script.window->front()->topScreen())->tableView();
}

TEST(HistoryScreen, ShowsTheTestsOrExplainsWhyNot) {
  const QString none = "温馨提示|您还没有测试记录|好的", failed = "温馨提示|未获取到测试记录|好的";
  const std::tuple<std::optional<std::string>, QString, int> table[] = {
      {historyReply(3), "", 3},
      {historyReply(0), none, 0},
      {R"({"rspCode":1})", none, 0},
      {R"({"rspCode":0,"listenTests":7})", none, 0},
      {"<html>", failed, 0},
      {std::nullopt, failed, 0},
      {R"({"rspCode":0,"listenTests":[7,null,{"createDate":1e99}]})", "", 3},
  };
  for (const auto& [reply, alert, count] : table) {
    ScreensScript script;
    openHistory(script, reply);
    EXPECT_EQ(script.alert(), alert);
    EXPECT_EQ(script.texts().filter("测试记录：").size(), count);
  }
}

TEST(HistoryScreen, SaysWhatTakesAMomentAndNothingOnceItIsClosedOrThereIsNoUser) {
  ScreensScript script;
  const auto isLoading = [&] { return script.sees("正在获取测试记录…"); };
  script.answers(std::nullopt, 2000);
  script.select->gotolishi();
  for (const bool isSaid : {false, true}) {
    script.run(0.2);
    EXPECT_EQ(isLoading(), isSaid);
  }
  const std::weak_ptr<Screen> history = script.window->front()->topScreen();
  script.click("‹ 选择设备");
  script.run(3);
  EXPECT_TRUE(history.expired() && script.alert().isEmpty());
  script.machine.userDefaults->removeValue("USERID");
  script.select->gotolishi();
  script.run(3);
  EXPECT_FALSE(isLoading());
  EXPECT_EQ(script.alert(), "");
}

TEST(HistoryScreen, RowsTellScoresAndTimeAndOpenTheirTest) {
  ScreensScript script;
  auto reply = nlohmann::json::parse(historyReply(2));
  for (const char* key : {"right500hz", "right1000hz", "right2000hz", "right4000hz"}) {
    reply["listenTests"][1][key] = "137";
  }
  reply["listenTests"][1]["createDate"] = 0;
  const TableCell* row = openHistory(script, reply.dump())->cellForRow({0, 0});
  for (const char* text : {"测试记录：1", "右耳得分：75分", "左耳得分：70分", "您的听力总得分：", "73",
                           "测试时间：2026-01-01 00:00:00", "右耳得分：-37分", "测试时间：1970-01-01 00:00:00"}) {
    EXPECT_TRUE(script.texts().contains(text)) << text;
  }
  script.click(row);
  script.run();
  EXPECT_TRUE(script.sees("您的右耳的平均听力损失为25分贝，"));
  script.clickAndWait("‹ 测试记录");
  EXPECT_EQ(script.title(), "测试记录");
}

TEST(HistoryScreen, TenThousandTestsMakeOnlyTheRowsInView) {
  ScreensScript script;
  TableView* table = openHistory(script, historyReply(10'000));
  QScrollBar* bar = table->verticalScrollBar();
  EXPECT_EQ(bar->maximum() + table->viewport()->height(), 10'000 * (44 + 160));
  for (int step = 0; step <= 100; ++step) bar->setValue(bar->maximum() / 100 * step);
  EXPECT_LE(table->cellCount(), 8U);
  EXPECT_LE(script.texts().filter("测试记录：").size(), 8);
  bar->setValue(204 * 5000);
  script.drag({150, 400}, {150, 340});
  script.run();
  EXPECT_NEAR(bar->value(), 204 * 5000 + 119, 2) << "follows the finger and opens nothing";
  bar->setValue(204 * 5000 + 60);
  EXPECT_TRUE(script.sees("测试记录：5001")) << "the heading stays while its row is in view";
  script.key(Qt::Key_End);
  EXPECT_TRUE(script.sees("测试记录：10000"));
  script.key(Qt::Key_Up);
  script.key(Qt::Key_Return);
  script.run();
  EXPECT_TRUE(script.sees("您的右耳的平均听力损失为65分贝，")) << "the last but one";
  script.clickAndWait("‹ 测试记录");
  script.key(Qt::Key_Home);
  for (int row = 0; row < 4; ++row) script.key(Qt::Key_Down);
  EXPECT_EQ(bar->value(), 5 * 204 - table->viewport()->height()) << "the fifth row is in view, and no more";
}

TEST(HistoryScreen, LeavesATableThatIsEmptyAtTheNextReload) {
  ScreensScript script;
  TableView* table = openHistory(script, historyReply(20));
  script.window->front()->pop();  // the screen has gone; its table goes with the next event
  table->cellForRow({0, 0})->click();
  table->verticalScrollBar()->setValue(900);
  table->reloadData();
  EXPECT_TRUE(table->verticalScrollBar()->maximum() == 0 && !table->cellForRow({0, 0}));
}

/// Pictures of screens with all their parts and an alert, in a host with this palette and style sheet.
std::vector<QImage> picturesOn(const QPalette& palette, const QString& styleSheet) {
  QApplication::setPalette(palette);
  std::vector<QImage> pictures;
  ScreensScript script;
  qApp->setStyleSheet(styleSheet);  // some of the screens are there by then
  const auto shootAfter = [&](double seconds) {
    script.run(seconds);
    pictures.push_back(script.window->grab().toImage());
  };
  script.click(kRows[0]);
  shootAfter(1.1);
  script.click("好的");
  script.plug(0);
  script.answers(calibration(0), 1000);
  script.click(kRows[0]);
  shootAfter(0.5);
  shootAfter(1);
  script.click(kReady);
  shootAfter(2);
  script.window->front()->push(ChannelCheckScreen::initWithTest(*script.test()->test()->manualTest()));
  shootAfter(1);
  script.test()->dismiss();
  showResult(script, {{"500hz", "30"}}, {{"500hz", "40"}});
  shootAfter(0);
  openHistory(script, historyReply(2));
  shootAfter(0);
  qApp->setStyleSheet({});
  QApplication::setPalette(QPalette());
  return pictures;
}

TEST(Screens, AHostsColoursChangeNothing) {
  const QPalette own = QApplication::palette();
  QPalette dark(QColor(40, 40, 40));
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) dark.setColor(role, QColor(30, 30, 30));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) dark.setColor(role, Qt::white);
  const std::vector<QImage> plain = picturesOn(own, {});
  const std::pair<QPalette, QString> table[] = {
      {dark, {}},
      {own, "* { color: #eee; background-color: #222; padding: 9px; margin: 5px; }"},
      {own, "QLabel { color: white; background: navy; } QPushButton { border: 2px solid red; }"},
  };
  for (const auto& [palette, styleSheet] : table) {
    EXPECT_TRUE(picturesOn(palette, styleSheet) == plain) << "a dark desktop, or: " << styleSheet.toStdString();
  }
}

}  // namespace
}  // namespace orn
