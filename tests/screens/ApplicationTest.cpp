// The application on a simulated machine, with a real service on the loopback interface.
#include <cmath>

#include <QtGui/QDesktopServices>
#include <QtWidgets/QTextBrowser>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>
#include <ORNHearingTestSDK/engine/ORNHearingTest.h>

#include "../support/Program.h"
#include "ScriptedApplication.h"
#include "hearing-app-tools/ScreenListener.h"
#include "hearing-service/HearingService.h"

namespace orn {
namespace {

/// An application whose machine has the address of the service but no profile.
struct Application : SimulatedHost, ApplicationHands {
  using ApplicationHands::machine;
  Application() : ApplicationHands(SimulatedHost::machine()), service(startService()) { knowDevices(machine); }
  Platform platform() const override { return SimulatedHost::platform(); }
  std::string address() { return "127.0.0.1:" + std::to_string(service.port()); }
  void setService(const std::string& address) { machine.userDefaults->setValue("SERVICEHOST", address); }
  std::string serviceInUse() { return std::get<std::string>(*machine.userDefaults->value("SERVICEHOST")); }

  void enterProfile() {
    EXPECT_EQ(title(), "个人资料");
    type("出生日期", "2001-3-5");
    type("手机号码", "13800000000");
    clickAndWait("完成");
    EXPECT_TRUE(sees("请选择性别")) << "nothing is taken for granted";
    clickAndWait("女");
    type("姓名", "Li");
    clickAndWait("完成");
    EXPECT_TRUE(title() == "选择设备" && sees("Li") && alert().isEmpty()) << alert().toStdString();
  }
  /// The sample listener takes the test that is open, by real clicks or touches, until the screen says so.
  void listenUntil(const QString& part) {
    int presses = 0;
    ScreenListener listener(*machine.audioOutput, *host, sampleListener(), [&] { ++presses; });
    listener.setListening(true);
    while (machine.virtualTime->runUntil([&] { return presses > 0 || sees(part); }, std::chrono::seconds(600)) &&
           !sees(part)) {
      presses = 0;
      click("听到了");
    }
    EXPECT_TRUE(sees(part)) << part.toStdString();
    run();
  }

  service::HearingService& service;
};

TEST(Application, LeadsFromTheProfileToTheStoredResultInTheHistory) {
  for (const int row : {0, 1}) {
    Application app;
    app.isByFinger = row == 1;
    app.open();
    app.enterProfile();
    for (int round = 1; round <= 2; ++round) {  // the second one with whatever is cached
      app.plug(row);
      app.clickAndWait(kRows[row]);
      app.clickAndWait(kReady);
      app.listenUntil("右耳测试结束");
      app.clickAndWait(kOtherEar);
      app.listenUntil("测试结果");
      EXPECT_TRUE(app.sees("您的右耳的平均听力损失为40分贝"));
      app.clickAndWait("完成");
      app.clickAndWait("测试记录");
      EXPECT_EQ(app.texts().filter("测试记录：").size(), round);
      app.clickAndWait("‹ 选择设备");
    }
    nlohmann::json last;
    ORNHearingTest::getListenTestWithCompletion([&](const auto&, const auto& tests) { last = tests.back(); });
    app.run();
    EXPECT_EQ(last["headset"], row == 0 ? "AA:BB:CC:DD:EE:FF" : "1");
    const auto stored = [&](const char* ear, int hz) { return last[ear + std::to_string(hz) + "hz"]; };
    for (const auto& [hz, db] : sampleListener().left) EXPECT_EQ(stored("left", hz), std::to_string(lround(db)));
    for (const auto& [hz, db] : sampleListener().right) EXPECT_EQ(stored("right", hz), std::to_string(lround(db)));
  }
}

TEST(Application, AsksForTheServiceAndAProfileAndLetsTheServiceBeChanged) {
  Application app;
  app.setService("");
  app.open();
  EXPECT_FALSE(app.button("看模拟演示")) << "where nobody can show one";
  const auto enter = [&](const std::string& address) {
    app.type("服务器地址", QString::fromStdString(address));
    app.clickAndWait("确定");
  };
  for (const char* wrong : {"", " ", "http://service.example", "service.example/user", "a b", "https://"}) {
    enter(wrong);
    EXPECT_TRUE(app.sees("请填写主机名") && app.title() == "测听服务器") << wrong;
    EXPECT_EQ(app.serviceInUse(), "");
  }
  enter(" " + app.address() + " ");
  EXPECT_EQ(app.serviceInUse(), app.address());
  app.enterProfile();
  app.clickAndWait("服务器");
  enter("https://localhost:1");
  EXPECT_EQ(app.serviceInUse(), "https://localhost:1");
  EXPECT_TRUE(app.title() == "选择设备" && app.sees("连接不上测听服务器，您的资料还没有登记"));
}

TEST(Application, SendsAProfileUntilTheServiceHasItAndSaysWhatIsMissing) {
  Application app;
  const auto alertAtOpening = [&](const std::optional<Profile>& profile) {
    app.open(profile);
    app.run();  // the alert comes after the screen
    EXPECT_TRUE(app.sees("选择设备") && app.sees("小明"));
    return app.alert();
  };
  using enum service::Misbehaviour::Kind;
  const std::tuple<service::Misbehaviour::Kind, std::optional<Profile>, QString> table[] = {
      {NoBody, sampleProfile(), "连接不上"}, {Refuse, {}, "没有接受"}, {Garbage, {}, "无法识别"}};
  for (const auto& [kind, profile, why] : table) {
    app.service.misbehave({kind, {}});
    const QString alert = alertAtOpening(profile);
    EXPECT_TRUE(alert.contains("您的资料还没有登记") && alert.contains(why)) << alert.toStdString();
  }
  app.service.misbehave({});
  for (int opening = 0; opening < 2; ++opening) {
    EXPECT_EQ(alertAtOpening({}), "");
    app.service.misbehave({NoBody, {}});  // which no longer matters
  }
  app.setService("localhost:1");
  EXPECT_TRUE(alertAtOpening({}).contains("您的资料还没有登记")) << "another service does not have it";
  app.clickAndWait("好的");
  app.plug(1);
  app.clickAndWait(kRows[1]);
  EXPECT_TRUE(app.alert().contains("连接不上测听服务器，无法获取设备的校准数据")) << "why no test opens";
}

TEST(Application, LeadsToASimulationThatSaysSoThroughoutAndBack) {
  Application app;
  int changes = 0;
  app.onOtherMode = [&] { ++changes; };
  app.setService("");
  app.open();
  app.click("看模拟演示");
  EXPECT_EQ(changes, 1);
  app.machine.userDefaults->removeValue(kCheckedDevicesDefault);
  app.open(sampleProfile(), Mode::Simulation, [&] { app.setService(app.address()); });  // begins once it shows
  const auto isMarked = [&] {
    return app.sees("模拟演示 · 不是真实的听力测试") &&
           app.shown().grab().toImage().pixelColor(3, 3) == QColor(0xfc, 0x64, 0x00);
  };
  EXPECT_TRUE(isMarked() && app.title() == "选择设备" && app.shown().windowTitle().contains("模拟演示"));
  app.plug(0);
  app.clickAndWait(kRows[0]);
  EXPECT_TRUE(isMarked() && app.button(kReady)) << "there is no sound to check";
  app.host->selection()->testVC()->dismiss();
  app.run();
  app.click("退出演示");
  EXPECT_EQ(changes, 2);
}

TEST(Application, OpensTheShopsWebPageOrSaysWhyNot) {
  Application app;
  app.open(sampleProfile());
  QTextBrowser browser;
  QDesktopServices::setUrlHandler("https", &browser, "setSource");
  for (const auto& [setting, notice] : {std::pair("https://shop.example/kv60", ""),
                                        {"", "还没有设置购买页面的网址"},
                                        {"file:///etc/hosts", "打不开购买页面"}}) {
    app.machine.userDefaults->setValue(kShopURLDefault, std::string(setting));
    app.clickAndWait("还没有听力检测仪？ 点此立即购买听力检测仪，即刻关爱您的听力健康。");
    const QString alert = app.alert();
    EXPECT_TRUE(*notice ? alert.contains(notice) : alert.isEmpty()) << alert.toStdString();
    if (*notice) app.clickAndWait("好的");
    EXPECT_EQ(browser.source().toString(), "https://shop.example/kv60");
  }
  QDesktopServices::unsetUrlHandler("https");
}

TEST(Application, TellsInEnglishThatTheSystemHasNoFontForItsTexts) {
  const contract::TemporaryFolder folder;
  for (const std::string& fonts : {folder.path(), std::string("/usr/share/fonts/truetype/dejavu")}) {
    const std::string settings = folder.write("fonts.conf", "<fontconfig><dir>" + fonts + "</dir></fontconfig>");
    Program app("env FONTCONFIG_FILE=" + settings + " 'QT_LOGGING_RULES=*=false' HOME=" + folder.path() +
                " XDG_CONFIG_HOME= XDG_DATA_HOME= " ORN_HEARING_APP " --simulate 2>&1 >/dev/null");
    std::string said = app.line();
    while (!said.empty() && !said.starts_with("hearing-app: ")) said = app.line();
    EXPECT_THAT(said, testing::HasSubstr("This system has no font for Chinese"));
    EXPECT_THAT(app.line(), testing::HasSubstr("apt install"));
    EXPECT_EQ(app.end(SIGTERM), 1) << "its window waits to be closed";
  }
}

}  // namespace
}  // namespace orn
