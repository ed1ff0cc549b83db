// The check of a device's channels before its first test, as a user of the application meets it.
#include <map>

#include "ScriptedApplication.h"

namespace orn {
namespace {

/// An application in which the channel check is open.
struct CheckedApplication : ScriptedApplication {
  explicit CheckedApplication(int checkedRow) : ScriptedApplication(checkedRow) {
    machine.userDefaults->removeValue(kCheckedDevicesDefault);
    EXPECT_TRUE(isAskedFor());
    EXPECT_EQ(volume(), 1);
  }
  bool isAskedFor() {
    clickAndWait(kRows[row]);
    return title() == "声音检查";
  }
};

TEST(ApplicationCheck, SaysWhatIsWrongAndLetsNoTestBeginWithTheWrongEars) {
  using Words = std::map<QString, QString>;  // the answer to each output of the machine
  const std::tuple<int, Words, QString, QString> table[] = {
      {1, {{"左", "左"}, {"右", "右"}}, "声音正常", "进入测试"},
      {1, {{"左", "右"}, {"右", "左"}}, "左右声道反了", {}},
      {1, {{"左", "两侧"}, {"右", "两侧"}}, "左右声道没有分开", {}},
      {1, {{"左", "没听到"}, {"右", "没听到"}}, "有声音没有听到", "仍然进入测试"},
      {0, {{"有声音", "有声音"}}, "声音正常", "进入测试"},
      {0, {{"有声音", "没听到"}}, "有声音没有听到", "仍然进入测试"},
  };
  for (const auto& [row, words, says, goesOnBy] : table) {
    CheckedApplication app(row);
    EXPECT_EQ(app.sees("不能检查左右声道"), row == 0);
    for (const bool isAgain : {false, true}) {
      if (isAgain) app.clickAndWait("再查一次");
      app.click("开始检查");
      while (app.button("再听一次")) app.click(words.at(app.heard(1)));
      EXPECT_TRUE(app.sees(says)) << says.toStdString();
      EXPECT_EQ(app.button("进入测试") || app.button("仍然进入测试"), !goesOnBy.isEmpty());
    }
    if (goesOnBy.isEmpty()) continue;
    app.clickAndWait(goesOnBy);
    EXPECT_TRUE(app.title() == "右耳测试" && app.volume() == 1);
    app.host->selection()->testVC()->dismiss();
    app.run();
    EXPECT_TRUE(app.title() == "选择设备" && app.volume() == kUsersVolume);
    app.open();
    EXPECT_EQ(app.isAskedFor(), says != "声音正常") << "before the first test only";
  }
}

TEST(ApplicationCheck, CanBeLeftAndSkipped) {
  for (const int row : {0, 1}) {
    CheckedApplication app(row);
    app.click("开始检查");
    app.click("取消");
    EXPECT_FALSE(app.sounds(1)) << "after the screen has gone";
    EXPECT_TRUE(app.title() == "选择设备" && app.volume() == kUsersVolume);
    EXPECT_TRUE(app.isAskedFor()) << "not done yet";
    app.clickAndWait("跳过检查");
    EXPECT_EQ(app.title(), "右耳测试");
  }
}

TEST(ApplicationCheck, TakesNoAnswerForAToneThatDoesNotSound) {
  CheckedApplication app(1);
  app.machine.audioOutput->setDevicePresent(false);
  app.click("开始检查");
  EXPECT_TRUE(app.alert().contains("测试设备没有播放声音"));
  app.clickAndWait("我知道了");
  app.machine.audioOutput->setDevicePresent(true);
  app.click("开始检查");
  app.machine.audioOutput->setHeldBack(true);
  app.run();
  app.machine.audioOutput->setHeldBack(false);
  app.click("没听到");
  EXPECT_TRUE(app.sees("声音没有播放完整") && app.sees("第 1 次，共 2 次"));
  app.click("再听一次");
  EXPECT_TRUE(app.sounds(1));
  app.unplug();
  EXPECT_TRUE(app.alert().contains("您的测试设备已断开"));
  app.clickAndWait("我知道了");
  EXPECT_EQ(app.title(), "选择设备");
}

}  // namespace
}  // namespace orn
