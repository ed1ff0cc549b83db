#include <functional>
#include <map>

#include <ORNHearingTestSDK/calibration/CalibrationRoles.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/screens/ChessboardView.h>
#include <ORNHearingTestSDK/screens/ORNTestResultViewController.h>

#include "ScreensScript.h"

namespace orn {
namespace {

const QString kIsee = "我知道了";
const QString kInstruction =
    "操作提示|系统将在左耳/右耳播放不同的声音。您每次听到声音的时候请立即按\"听到了\"按钮。|" + kReady;
const QString kEndQuestion = "温馨提示|请确认结束测试？\n测试数据将不保存|取消|结束测试";
const QString kChangeOver = "温馨提示|右耳测试结束\n开始左耳测试 |" + kOtherEar;
const QString kDisconnected = "温馨提示|您的测试设备已断开，请连接后重新测试|我知道了";

/// A user with these thresholds presses the space bar at each tone heard, as the board shows it, until the ear is done.
void takeEar(ScreensScript& script, ChessboardView& board, const std::map<std::string, int>& thresholds) {
  for (int second = 0; second < 1000 && !board.isTestEnd(); ++second) {
    script.run(1);
    const QPointF mark = board.currentTestPointBack();
    if (board.currentTestPoint().x() < 0 || board.isTestEnd()) continue;
    const std::string& hz = board.hzs()[static_cast<std::size_t>(mark.x())];
    if (15 + 5 * mark.y() >= thresholds.at(hz)) script.key(Qt::Key_Space);
  }
}
void takeRightEar(ScreensScript& script) {
  takeEar(script, *script.test()->rightChessView(), {{"500hz", 30}, {"1000hz", 35}, {"2000hz", 45}, {"4000hz", 65}});
}

struct BothPaths : testing::TestWithParam<int> {
  void expectClosedInSilence(float volume) {
    EXPECT_EQ(script.alert(), "") << "goes with its test";
    EXPECT_FALSE(script.sounds(30));
    EXPECT_EQ(script.title(), "选择设备");
    EXPECT_EQ(script.volume(), volume);
    EXPECT_EQ(script.requests(), 1U) << "nothing of the test is kept";
  }
  ScreensScript script;
};
INSTANTIATE_TEST_SUITE_P(Rows, BothPaths, testing::Values(0, 1));

/// Also run in a window of an X server, where what a screen reader finds is read over its bus.
TEST_P(BothPaths, WholeTestByKeyboardFromTheDeviceToTheResult) {
  script.window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(script.window.get(), 20'000));
  const auto press = [&](Qt::Key key) { script.key(key), script.run(1.1); };
  script.plug(GetParam());
  script.answers(calibration(GetParam()));
  for (int row = 0; row <= GetParam(); ++row) script.key(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(script.alert(), kInstruction);
  EXPECT_TRUE(script.title() == "右耳测试" && script.volume() == 1);
  EXPECT_FALSE(script.sounds(10)) << "before the user is ready";
  press(Qt::Key_Return);
  ChessboardView &right = *script.test()->rightChessView(), &left = *script.test()->chessView();
  EXPECT_EQ(script.window->childAt(30, 100), &right);
  takeRightEar(script);
  EXPECT_EQ(script.alert(), kChangeOver) << "the last press answers nothing";
  EXPECT_FALSE(script.sounds(10));
  press(Qt::Key_Space);
  EXPECT_TRUE(script.title() == "左耳测试" && script.window->childAt(30, 100) == &left);
  takeEar(script, left, {{"500hz", 20}, {"1000hz", 20}, {"2000hz", 20}, {"4000hz", 20}});
  script.run();
  EXPECT_TRUE(script.title() == "测试结果" && script.volume() == kUsersVolume);
  EXPECT_TRUE(script.sees("您的右耳的平均听力损失为43分贝，属于中度听力损失。"));
  EXPECT_TRUE(script.sees("您的左耳的平均听力损失为20分贝，属于正常。"));
  script.key(Qt::Key_Tab);
  press(Qt::Key_Return);
  EXPECT_EQ(script.title(), "选择设备");
}

TEST(ScreenReader, TellsWhatIsSeenFromTheTopDown) {
  ScreensScript script;
  EXPECT_EQ(script.spoken().value(0), "选择设备");
  EXPECT_FALSE(script.spoken().filter(kRows[0]).isEmpty());
  static int comings, goings;
  const auto before = QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
    comings += event->type() == QAccessible::ObjectCreated;
    goings += event->type() == QAccessible::ObjectDestroyed;
  });
  script.openTest(0);
  QAccessible::installUpdateHandler(before);
  EXPECT_TRUE(!QAccessible::isActive() || (comings > 0 && goings > 0)) << "a reader keeps what it was told";
  EXPECT_EQ(script.spoken().value(0), "操作提示") << "and nothing beneath the alert";
  EXPECT_TRUE(script.spoken().filter("听力图").isEmpty() && script.spoken().contains(kReady));
  const QAccessibleInterface* window = QAccessible::queryAccessibleInterface(script.window.get());
  EXPECT_EQ(window->child(0)->role(), QAccessible::AlertMessage);
  script.click(kReady);
  script.run(30);  // nothing is heard, so the first threshold is there
  EXPECT_EQ(script.spoken(), QStringList({"右耳测试", "取消", "右耳听力图：1000赫兹90分贝", "听到了"}))
      << "not the covered board";
}

TEST_P(BothPaths, WhateverInterruptsATestSilencesItUntilItsUserGoesOn) {
  script.startTest(GetParam());
  ASSERT_TRUE(script.sounds(5));
  script.click("取消");
  script.test()->showEndAlert();  // the question is shown already
  EXPECT_EQ(script.alert(), kEndQuestion);
  EXPECT_FALSE(script.sounds(30));
  script.clickAt({20, 20});  // the bar can't be clicked
  script.key(Qt::Key_Escape);
  EXPECT_EQ(script.alert(), "");
  EXPECT_TRUE(script.sounds(1));

  script.window->front()->push(ORNTestResultViewController::init());
  EXPECT_FALSE(script.sounds(30));
  EXPECT_EQ(script.volume(), kUsersVolume);
  script.machine.audioSession->setOutputVolume(0.75F);
  script.click("‹ 右耳测试");
  EXPECT_EQ(script.volume(), 1.0F);
  EXPECT_FALSE(script.sounds(30)) << "nothing lets it go on but the answer to the end's question";
  script.click("取消");
  script.click("取消");
  EXPECT_TRUE(script.sounds(5));

  takeRightEar(script);
  EXPECT_EQ(script.alert(), kChangeOver);
  script.test()->showEndAlert();  // by the host
  EXPECT_FALSE(script.sounds(10));
  script.click("取消");
  EXPECT_EQ(script.alert(), kChangeOver);
  EXPECT_TRUE(script.sounds(10)) << "the first ear once more";
  script.test()->showEndAlert();
  script.click("结束测试");
  expectClosedInSilence(0.75F);
}

TEST_P(BothPaths, LostDeviceLeadsOnlyToTheEnd) {
  script.openTest(GetParam());
  script.machine.audioSession->setRoute(script.machine.audioSession->currentRoute(), "HeadsetBT", 1);
  script.run(0.1);
  EXPECT_EQ(script.alert(), kInstruction) << "at another change of the route";
  script.click(kReady);
  ASSERT_TRUE(script.sounds(5));
  script.test()->showTishi();
  script.unplug();
  EXPECT_EQ(script.alert(), kDisconnected) << "over the one that is there";
  EXPECT_FALSE(script.sounds(30));
  script.click(kIsee);
  expectClosedInSilence(kUsersVolume);
}

using Script = ScreensScript;

/// A drag in steps that stay within the button, which follows it.
void dragHeardButton(ScreensScript& script, QPoint by, int steps) {
  QWindow* handle = script.window->windowHandle();
  const QPoint at = script.heardButton()->geometry().center();
  QTest::mousePress(handle, Qt::LeftButton, {}, at);
  for (int step = 1; step <= steps; ++step) QTest::mouseMove(handle, at + by * step / steps);
  QTest::mouseRelease(handle, Qt::LeftButton, {}, at + by);
  EXPECT_EQ(script.heardButton()->geometry().center(), steps > 0 ? at + by - QPoint(1, 1) : at);
}

TEST(TestScreen, PressesDecideTheNextTone) {
  const std::tuple<const char*, std::function<void(Script&)>, int> table[] = {
      {"mouse", [](Script& script) { script.click(script.heardButton()); }, 3},
      {"finger", [](Script& script) { script.touch(script.heardButton()); }, 3},
      {"space", [](Script& script) { script.key(Qt::Key_Space); }, 3},
      {"return", [](Script& script) { script.key(Qt::Key_Return); }, 3},
      {"nothing", [](Script&) {}, 7},
      {"drag", [](Script& script) { dragHeardButton(script, QPoint(-150, -300), 10); }, 3},
      {"drag off the screen", [](Script& script) { dragHeardButton(script, QPoint(0, 140), 10); }, 3},
      {"release outside", [](Script& script) { dragHeardButton(script, QPoint(0, -200), 0); }, 7},
  };
  for (const auto& [name, press, nextRow] : table) {
    Script script;
    script.startTest(0);
    script.run(4.1);
    const ChessboardView* board = script.test()->rightChessView();
    ASSERT_EQ(board->currentTestPointBack(), QPointF(1, 5)) << "1000 Hz at 40 dB";
    press(script);
    script.run(4);
    EXPECT_EQ(board->currentTestPointBack(), QPointF(1, nextRow)) << name;
  }
}

TEST(TestScreen, ClosesAtAnyMomentInSilenceAndLeavesNothing) {
  const std::function<void(Script&)> waysToClose[] = {
      [](Script& script) { script.test()->dismiss(); },
      [](Script& script) {
        script.window->front()->push(ORNTestResultViewController::init()), script.test()->dismiss();
      },
      [](Script& script) { script.test()->cancelButtonClicked(), script.closeWindow(); },
  };
  for (const auto& close : waysToClose) {
    // In tones, within the second after a threshold (the ear hears nothing, so one comes at 28 s), and at the end.
    for (const double moment : {4.1, 28.5, 118.0, 121.5}) {
      for (const int row : {0, 1}) {
        Script script;
        script.startTest(row);
        script.run(moment);
        const std::weak_ptr<ORNHearingTest> session = script.test()->test();
        close(script);
        EXPECT_FALSE(script.sounds(10)) << moment;
        EXPECT_EQ(script.volume(), kUsersVolume);
        script.machine.audioSession->setOutputVolume(0.75F);
        script.closeWindow();
        script.run(10);
        EXPECT_EQ(script.volume(), 0.75F) << "the user's next one, which stays";
        EXPECT_TRUE(session.expired()) << moment;
      }
    }
  }
}

TEST(TestScreen, ClosingTheWindowInMidTestAsksFirst) {
  const auto close = [](Script& script) { script.window->close(), script.run(0.1); };
  const std::tuple<const char*, std::function<void(Script&)>, bool> table[] = {
      {"in mid-test", close, false},
      {"twice in one go", [&](Script& script) { close(script), close(script); }, false},
      {"again with the question in view", [&](Script& script) { close(script), script.run(1), close(script); }, true},
      {"with the question asked before", [&](Script& script) { script.click("取消"), script.run(1.1), close(script); },
       true},
      {"and yes", [&](Script& script) { close(script), script.click("结束测试"); }, true},
      {"between the ears", [&](Script& script) { takeRightEar(script), close(script); }, false},
      {"without its device", [&](Script& script) { script.unplug(), script.run(), close(script); }, true},
  };
  for (const auto& [name, reach, isClosed] : table) {
    Script script;
    script.startTest(0);
    script.run(5);
    reach(script);
    EXPECT_EQ(script.window->isVisible(), !isClosed) << name;
    EXPECT_FALSE(script.sounds(20)) << name;
    if (isClosed) {
      EXPECT_EQ(script.volume(), kUsersVolume) << name;
      continue;
    }
    EXPECT_EQ(script.alert(), kEndQuestion) << name;
    script.click("取消");
    EXPECT_TRUE(script.sounds(10)) << name;
    script.test()->showEndAlert();
    script.click("结束测试");
    EXPECT_TRUE(script.window->isVisible()) << "the next end is the test's alone";
  }
  Script script;
  script.openTest(0);
  close(script);
  EXPECT_FALSE(script.window->isVisible()) << "nothing has begun";
}

TEST(TestScreen, WhenATestEndsItsDialogGoesAndALostDeviceIsStillTold) {
  ScreensScript script;
  script.openTest(0);
  script.test()->showEndAlert();
  script.test()->hearingTestDelegate()->completeWithLeftResult(*script.test()->test(), {}, {});
  script.run();
  EXPECT_TRUE(script.title() == "测试结果" && script.alert().isEmpty());
  for (const bool hasGone : {false, true}) {
    script.unplug();
    EXPECT_EQ(script.alert(), hasGone ? "" : kDisconnected) << "the screen may go, and be held all the same";
    if (!hasGone) script.click(kIsee);
    script.run();
    EXPECT_EQ(script.title(), "选择设备");
    script.plug(0);
  }
}

TEST(TestScreen, ADeviceLostBeforeTheEndIsToldAfterIt) {
  ScreensScript script;
  script.openTest(0);
  script.unplug();
  script.test()->hearingTestDelegate()->completeWithLeftResult(*script.test()->test(), {}, {});
  script.run();
  EXPECT_TRUE(script.title() == "测试结果" && script.alert() == kDisconnected);
}

TEST(TestScreen, AToneThatDoesNotSoundIsToldOnceWithItsReason) {
  const std::pair<ToneMissingReason, QString> table[] = {
      {ToneMissingReason::Calibration, "没有测试设备的校准数据，无法进行测试"},
      {ToneMissingReason::Recording, "没有测试音的录音文件，无法进行测试"},
      {ToneMissingReason::Output, "测试设备没有播放声音，无法继续测试。请检查设备的连接后重新测试"}};
  for (const auto& [reason, text] : table) {
    ScreensScript script;
    script.startTest(0);
    for (const bool isLeft : {false, true}) {
      script.test()->hearingTestDelegate()->toneMissing(*script.test()->test(), reason, isLeft);
    }
    EXPECT_EQ(script.alert(), "温馨提示|" + text + "|我知道了");
    script.clickAndWait(kIsee);
    EXPECT_TRUE(script.alert().isEmpty() && script.title() == "选择设备");
  }
}

TEST(TestScreen, WithoutAudiometerThereIsNoSession) {
  ScreensScript script;
  script.window->navigation()->setTranslucent(false);
  const auto screen = ORNHearingTestViewController::initKV50TestByCompletionHandler(
      [](const std::optional<Error>&) { ADD_FAILURE() << "there is nothing to fetch"; });
  int told = 0;
  screen->showHearingTestViewControllerByNavigation(script.window->navigation(), "左", {}, "右", [&] { ++told; });
  script.run();
  EXPECT_EQ(screen->rightChessView()->geometry(), QRect(0, 0, 375, 667)) << "beneath a bar that hides what it covers";
  script.click(kReady);
  script.click(script.heardButton());
  for (const bool isThere : {false, true}) {
    screen->setDragButtonEnable(isThere);
    EXPECT_EQ(script.heardButton() != nullptr, isThere);
  }
  script.click("右");
  EXPECT_EQ(told, 1);
  EXPECT_FALSE(script.button("左")) << "the test has a left item of its own";
  EXPECT_FALSE(script.sounds(6));
  std::optional<Error> why;
  const auto other =
      ORNHearingTestViewController::initTestByPath(OutputPath::Audiometer, [&](auto error) { why = error; });
  script.run();
  EXPECT_TRUE(other && !other->test() && why) << "which the other way to make one tells";
  EXPECT_EQ(script.requests(), 0U);
}

TEST(TestScreen, BoardsTakeTouchesInAManualTestOnly) {
  for (const int type : {0, 1, 2}) {
    ScreensScript script;
    const auto screen = ORNHearingTestViewController::initEarphoneTestByCompletionHandler({});
    const auto session = std::dynamic_pointer_cast<ORNManualHearingTest>(ORNHearingTest::initWithTestType(type));
    session->setRightVolue(earphoneRecords(*ORNDeviceCorrect::parse(calibration(1))).right);
    session->setTestHzs(screen->testHzs());
    session->setDelegate(screen->hearingTestDelegate());
    screen->setTest(session);
    screen->showHearingTestViewControllerByNavigation(script.window->navigation(), std::nullopt, {}, std::nullopt, {});
    script.run();
    script.click(kReady);
    ChessboardView* board = screen->rightChessView();
    script.clickAt(board->mapTo(script.window.get(), board->getDrawPoint({1, 5}).toPoint() + QPoint(3, -3)));
    EXPECT_EQ(script.sounds(0.5), type == 1) << type;
    EXPECT_EQ(board->currentTestPointBack() == QPointF(1, 5), type == 1) << type;
    script.click("取消");  // pushed, not presented: it goes back to the screen before
    script.clickAndWait("结束测试");
    EXPECT_EQ(script.title(), "选择设备");
  }
}

}  // namespace
}  // namespace orn
