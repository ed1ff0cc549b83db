#include <QtGui/QKeyEvent>
#include <QtWidgets/QScrollBar>

#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/screens/TableView.h>

#include "ScreensScript.h"

namespace orn {
namespace {

const QString kBuy = "还没有听力检测仪？ 点此立即购买听力检测仪，即刻关爱您的听力健康。";
const QString kAudiometer =
    "听力检测仪是一款专业的听力检测设备，经过严格的医学校准，采用最新的技术手段制作，测试结果准确。";
const QString kEarphones = "推荐耳机是指经过奥伦声校准的耳机，使用奥伦声推荐耳机测听，测听结果误差很小。";
const QString kRefusals[] = {"温馨提示|请先连接听力检测仪，连接方法：打开手机设置－蓝牙－连接KV60S|好的",
                             "温馨提示|请先连接测试耳机，并正确佩戴左右耳|好的"};

TEST(SelectScreen, RouteDecidesWhatTheRowsSayAndDo) {
  const AudioPort audiometer{"KV60S", "AA:BB:CC:DD:EE:FF-tsco"}, earphones{"Headphones", "Wired"};
  const std::tuple<std::vector<AudioPort>, const char*, bool, bool> table[] = {
      {{}, "Speaker", false, false},
      {{audiometer}, "HeadsetBT", true, false},
      {{earphones}, "Headphone", false, true},
      {{audiometer, earphones}, "Headphone", true, false},
  };
  for (const auto& [outputs, text, isAudiometerThere, areEarphonesThere] : table) {
    ScreensScript script;
    script.machine.audioSession->setRoute({{}, outputs}, text, 1);
    script.run();
    EXPECT_TRUE(script.texts().contains(isAudiometerThere ? "已连接，蓝牙地址AA:BB:CC:DD:EE:FF\n" + kAudiometer
                                                          : kAudiometer + "\n连接方法：打开手机设置－蓝牙－连接KV60S"));
    EXPECT_TRUE(script.texts().contains(areEarphonesThere ? "已连接，" + kEarphones : kEarphones));
    for (const int row : {0, 1}) {
      const bool isThere = row == 0 ? isAudiometerThere : areEarphonesThere;
      script.answers(calibration(row));
      script.clickAndWait(kRows[row]);
      EXPECT_EQ(script.title(), isThere ? "右耳测试" : "选择设备");
      EXPECT_TRUE(isThere || script.alert() == kRefusals[row]);
      isThere ? script.test()->dismiss() : script.click("好的");
      script.run();
    }
    script.unplug();
    EXPECT_FALSE(script.sees("已连接"));
  }
}

struct Rows : testing::TestWithParam<int>, ScreensScript {
  Rows() { plug(row); }
  const int row = GetParam();
};
INSTANTIATE_TEST_SUITE_P(SelectScreen, Rows, testing::Values(0, 1));

TEST_P(Rows, AreClosedWhileTheirCalibrationIsFetched) {
  answers(std::nullopt, 5000);
  for (const std::size_t round : {1U, 2U}) {  // the row can be tapped again after a failure
    for (int tap = 0; tap < 3; ++tap) click(kRows[row]);
    run(3);
    click(kRows[row]);
    for (const Qt::Key one : {Qt::Key_Return, Qt::Key_Space}) key(one);
    EXPECT_EQ(requests(), round);
    run(3);
    EXPECT_EQ(title(), "选择设备");
    EXPECT_EQ(alert(), "") << "a failure is not told";
  }
  answers(calibration(row), 5000);
  click(kRows[row]);
  const std::weak_ptr<Screen> closed = select;
  select.reset();
  window = std::make_unique<NavigationWindow>();
  run(6);
  EXPECT_TRUE(closed.expired()) << "closed while the calibration is fetched";
  EXPECT_EQ(volume(), kUsersVolume) << "no test was shown";
}

TEST_P(Rows, SayWhatTakesAMomentAndLetItBeGivenUp) {
  QWidget* cell = button(kRows[row]);
  const QRect pictureAndTitle(0, 0, 180, cell->height() / 2);
  click(kRows[row]);  // nothing answers, and the row has the keyboard focus
  run(6);
  const QImage before = cell->grab(pictureAndTitle).toImage();
  answers(calibration(row), 5000);
  for (const bool byKey : {false, true}) {
    click(kRows[row]);
    for (const bool isSaid : {false, true}) {
      run(0.2);
      EXPECT_EQ(button("取消") != nullptr, isSaid);
    }
    EXPECT_EQ(cell->accessibleDescription(), "正在获取校准数据…");
    EXPECT_TRUE(cell->grab(pictureAndTitle).toImage() == before) << "the row looks as it did";
    byKey ? key(Qt::Key_Escape) : click("取消");
    EXPECT_TRUE(!button("取消") && cell->hasFocus());
    run(0.6);
  }
  key(row == 0 ? Qt::Key_Return : Qt::Key_Space);  // again at once
  run(4.2);
  EXPECT_EQ(title(), "选择设备") << "what was given up opens no test";
  const std::size_t asked = requests();
  click(kRows[row]);
  EXPECT_EQ(requests(), asked) << "nor the row";
  run();
  EXPECT_EQ(title(), "右耳测试");
}

TEST_P(Rows, TappedWhileAnotherOnesCalibrationIsFetchedOpenWithTheirOwn) {
  for (const int tapped : {row, 1 - row}) {
    plug(tapped);
    answers(calibration(tapped), tapped == row ? 3000 : 5000);
    click(kRows[tapped]);
  }
  for (const char* shownThen : {"选择设备", "右耳测试"}) {
    run(3);
    EXPECT_EQ(title(), shownThen);
  }
  EXPECT_EQ(test()->test()->earPlugModel().has_value(), row == 0);
}

TEST_P(Rows, OpenByACachedCalibrationForTheAudiometerAndNotForEarphones) {
  startTest(row);
  test()->dismiss();
  run();
  click(kRows[row]);
  plug(row);
  EXPECT_EQ(requests(), 1U);
  EXPECT_EQ(title(), row == 0 ? "右耳测试" : "选择设备");
  if (row == 0) return;
  button(kRows[1])->click();  // as a screen reader does
  run();
  EXPECT_EQ(title(), "选择设备") << "a reload does not open it";
  EXPECT_FALSE(button("取消")) << "nothing is on its way";
}

TEST(SelectScreen, DirectStartAsksForNoDevice) {
  ScreensScript script;
  for (const bool isAnswered : {false, true}) {
    script.answers(isAnswered ? std::optional(calibration(1)) : std::nullopt);
    script.select->startErjiTest();
    script.run();
    EXPECT_EQ(script.title(), isAnswered ? "右耳测试" : "选择设备");
    EXPECT_EQ(script.alert().isEmpty(), !isAnswered);
  }
}

TEST(SelectScreen, AnAlertTakesNoKeyThatWasMeantForTheRowBeneathAndGivesTheKeyboardBack) {
  const std::tuple<const char*, std::vector<Qt::Key>, double, bool> table[] = {
      {"another key", {Qt::Key_A}, 1.1, false},
      {"return at once", {Qt::Key_Return}, 0, false},
      {"space at once", {Qt::Key_Space}, 0, false},
      {"return within the second", {Qt::Key_Return}, 0.9, false},
      {"return after it", {Qt::Key_Return}, 1.1, true},
      {"space after it", {Qt::Key_Space}, 1.1, true},
      {"escape at once", {Qt::Key_Escape}, 0, true},
      {"chosen by the tabulator key", {Qt::Key_Tab, Qt::Key_Return}, 0, true},
  };
  for (const auto& [name, keys, seconds, isAnswered] : table) {
    ScreensScript script;
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}) script.key(key);
    EXPECT_EQ(script.alert(), kRefusals[1]);
    EXPECT_TRUE(script.sees("按回车键或空格键选择"));
    script.run(seconds);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QCoreApplication::sendEvent(script.window->focusWidget(), &held);
    for (const Qt::Key key : keys) script.key(key);
    EXPECT_EQ(script.alert().isEmpty(), isAnswered) << name;
    if (!isAnswered) continue;
    script.machine.audioSession->setRoute({}, "Speaker", 1);  // which fills the rows anew
    script.select->gotolishi();
    script.run();
    script.window->navigation()->pop();
    script.run();
    EXPECT_EQ(script.window->focusWidget()->accessibleName(), kRows[1]) << name;
  }
}

TEST(SelectScreen, SaysWhoIsTestedAndWhereToBuy) {
  ScreensScript script;
  EXPECT_TRUE(script.sees("小明"));
  script.click(kBuy);  // does nothing without a host
  std::vector<QWidget*> senders;
  const auto delegate = std::make_shared<ORNSelectTypeDelegate>();
  delegate->buyButtonClick = [&](QWidget* one) { senders.push_back(one); };
  script.select->setDelegate(delegate);
  QWidget* const buy = script.button(kBuy);
  script.click(kBuy);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_A}) script.key(key);
  script.window->resize(320, 480);
  QScrollBar* bar = script.window->findChild<TableView*>()->verticalScrollBar();
  EXPECT_GT(bar->maximum(), 0);
  bar->setValue(bar->maximum());
  script.click(kBuy);
  script.window->resize(1280, 800);
  const QWidget* row = script.button(kRows[0]);
  EXPECT_EQ(row->mapTo(script.window.get(), QPoint(0, 0)).x(), (1280 - row->width()) / 2) << "in the middle";
  script.window->resize(375, 667);
  EXPECT_EQ(senders, std::vector<QWidget*>(4, buy));
  script.machine.userDefaults->removeValue("USERNAME");
  script.window->navigation()->push(ORNSelectTypeViewController::init());
  script.run();
  EXPECT_TRUE(script.sees("(null)"));
}

}  // namespace
}  // namespace orn
