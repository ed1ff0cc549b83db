// The check before a test as a user meets it, who answers by what comes out of the output.

#include <array>

#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/screens/ChannelCheckScreen.h>

#include "ScreensScript.h"

namespace orn {
namespace {

/// The device selection with a host that puts the check before each test.
struct CheckedScreens : ScreensScript {
  CheckedScreens() {
    host->shouldPresentTest = [this](const std::shared_ptr<ORNHearingTestViewController>& test) {
      const auto session = std::dynamic_pointer_cast<ORNManualHearingTest>(test->test());
      const auto check = ChannelCheckScreen::initWithTest(*session);
      check->onDone = [this, test, weak = std::weak_ptr(check)](std::optional<ChannelFinding> finding) {
        found = finding;
        volumeAtTheEnd = volume();
        weak.lock()->navigationController()->push(test);
      };
      select->present(NavigationController::initWithRootViewController(check));
      return false;
    };
    select->setDelegate(host);
    // The output outlives this, and is heard to its end.
    machine.audioOutput->addListener([heard = heard](std::int64_t, std::span<const std::int16_t> samples) {
      for (std::size_t i = 0; i < samples.size(); ++i) (*heard)[i % 2] = (*heard)[i % 2] || samples[i] != 0;
    });
  }
  /// "left", "right", "both" or "nothing" of what comes out within a second.
  QString listen() {
    *heard = {};
    run();
    const auto [left, right] = *heard;
    if (left && right) return "both";
    return left ? "left" : right ? "right" : "nothing";
  }
  /// Answers each tone, by what this user calls what comes out, until there is a finding.
  void answer(const std::map<QString, QString>& answers) {
    click(QString("开始检查"));
    while (button("再听一次")) click(answers.at(listen()));
  }

  std::shared_ptr<ORNSelectTypeDelegate> host = std::make_shared<ORNSelectTypeDelegate>();
  std::shared_ptr<std::array<bool, 2>> heard = std::make_shared<std::array<bool, 2>>();
  std::optional<ChannelFinding> found;
  float volumeAtTheEnd = -1;
};

TEST(ChannelCheckScreen, SaysWhatIsWrongAndLetsNoTestBeginWithTheWrongEars) {
  struct Case {
    int row;
    std::map<QString, QString> answers;
    QString says;
    std::optional<QString> goesOnBy;
  };
  const Case table[] = {
      {1, {{"left", "左"}, {"right", "右"}}, "声音正常", "进入测试"},
      {1, {{"left", "右"}, {"right", "左"}}, "左右声道反了", {}},
      {1, {{"left", "两侧"}, {"right", "两侧"}}, "左右声道没有分开", {}},
      {1, {{"left", "没听到"}, {"right", "没听到"}}, "有声音没有听到", "仍然进入测试"},
      {0, {{"both", "有声音"}}, "声音正常", "进入测试"},
      {0, {{"both", "没听到"}}, "有声音没有听到", "仍然进入测试"},
  };
  for (const auto& [row, answers, says, goesOnBy] : table) {
    CheckedScreens app;
    app.openTest(row);
    EXPECT_EQ(app.title(), "声音检查");
    EXPECT_EQ(app.sees("不能检查左右声道"), row == 0);
    EXPECT_EQ(app.volume(), 1);
    app.answer(answers);
    EXPECT_TRUE(app.sees(says)) << says.toStdString();
    EXPECT_EQ(app.button("进入测试") || app.button("仍然进入测试"), goesOnBy.has_value());
    app.click(QString("再查一次"));
    app.answer(answers);
    if (!goesOnBy) continue;
    app.click(*goesOnBy);
    EXPECT_EQ(app.volumeAtTheEnd, kUsersVolume);
    EXPECT_EQ(app.found.has_value(), true);
    app.run();
    EXPECT_EQ(app.title(), "右耳测试");
    EXPECT_EQ(app.volume(), 1);
    app.test()->dismiss();
    app.run();
    EXPECT_EQ(app.title(), "选择设备");
    EXPECT_EQ(app.volume(), kUsersVolume);
  }
}

TEST(ChannelCheckScreen, CanBeSkippedAndLeft) {
  for (const int row : {0, 1}) {
    CheckedScreens app;
    app.openTest(row);
    app.click(QString("跳过检查"));
    EXPECT_EQ(app.found, std::nullopt);
    app.run();
    EXPECT_EQ(app.title(), "右耳测试");
    app.test()->dismiss();
    app.run();
    app.clickRow(row);
    app.run();
    if (row == 1) continue;  // whose calibration comes from its cache, which opens nothing
    app.click(QString("开始检查"));
    app.click(QString("取消"));
    EXPECT_EQ(app.listen(), "nothing") << "after the screen has gone";
    EXPECT_EQ(app.title(), "选择设备");
    EXPECT_EQ(app.volume(), kUsersVolume);
  }
}

TEST(ChannelCheckScreen, AToneThatDoesNotSoundIsNoAnswer) {
  CheckedScreens app;
  app.openTest(1);
  app.machine.audioOutput->setDevicePresent(false);
  app.click(QString("开始检查"));
  EXPECT_THAT(app.alert().toStdString(), testing::HasSubstr("测试设备没有播放声音"));
  app.click(QString("我知道了"));
  app.machine.audioOutput->setDevicePresent(true);
  app.click(QString("开始检查"));
  app.machine.audioOutput->setHeldBack(true);
  app.run();
  app.machine.audioOutput->setHeldBack(false);
  app.click(QString("没听到"));
  EXPECT_TRUE(app.sees("声音没有播放完整") && app.sees("第 1 次，共 2 次"));
  app.click(QString("再听一次"));
  EXPECT_EQ(app.listen(), "right");
  app.click(QString("右"));
  EXPECT_TRUE(app.sees("第 2 次，共 2 次"));
  EXPECT_EQ(app.listen(), "left");
  app.machine.audioSession->unplug();
  app.run();
  EXPECT_THAT(app.alert().toStdString(), testing::HasSubstr("您的测试设备已断开"));
  app.click(QString("我知道了"));
  app.run();
  EXPECT_EQ(app.title(), "选择设备");
}

}  // namespace
}  // namespace orn
