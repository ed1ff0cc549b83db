#include <QtGui/QDesktopServices>
#include <QtWidgets/QTextBrowser>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>

#include "Hands.h"
#include "hearing-app/HostApplication.h"
#include "hearing-app/ScreenListener.h"
#include "hearing-app/SimulatedHost.h"
#include "hearing-service/HearingService.h"
#include "tests/sound/SoundFixture.h"

namespace orn {
namespace {

using std::chrono::seconds;

const QString kRows[] = {"听力检测仪", "推荐耳机"};
const QString kReady = "准备好了，开始测试";
struct ApplicationHands : Hands {
  explicit ApplicationHands(HostApplication& application) : host(application) {}
  NavigationWindow& shown() const override { return host.window(); }
  HostApplication& host;
};

struct Application : SimulatedHost {
  void run() {
    machine().virtualTime->runFor(seconds(2));
    Hands::settle();
  }
  void click(const QString& name) {
    hands.click(name);
    run();
  }
  void start() {
    host.open();
    run();
    hands.type("出生日期", "2001-3-5");
    hands.type("手机号码", "13800000000");
    click("完成");
    EXPECT_TRUE(hands.sees("请选择性别")) << "nothing is taken for granted";
    click("女");
    hands.type("姓名", "Li");
    click("完成");
    EXPECT_TRUE(hands.sees("选择设备") && hands.sees("Li"));
  }
  void plug(int row) {
    row == 0 ? plugAudiometer() : machine().audioSession->plugEarphones();
    run();
  }
  /// The listener takes the test that is open, by real clicks, until the screen says so.
  void listenUntil(const QString& part) {
    listener.setListening(true);
    while (machine().virtualTime->runUntil([&] { return presses > 0 || hands.sees(part); }, seconds(600)) &&
           !hands.sees(part)) {
      presses = 0;
      hands.click(QString("听到了"));
    }
    listener.setListening(false);
    run();
    EXPECT_TRUE(hands.sees(part)) << part.toStdString();
  }

  int presses = 0;
  HostApplication host{platform()};
  ScreenListener listener{*machine().audioOutput, host, sampleListener(), [this] { ++presses; }};
  ApplicationHands hands{host};
};

class ApplicationPaths : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Rows, ApplicationPaths, testing::Values(0, 1));

TEST_P(ApplicationPaths, FromTheProfileToTheStoredResultInTheHistory) {
  Application app;
  app.start();
  const QImage rows = app.host.window().grab(QRect(0, 240, 375, 150)).toImage();
  EXPECT_FALSE(rows.allGray()) << "the rows' pictures show";
  for (int round = 1; round <= 2; ++round) {  // the second one with whatever is cached
    app.plug(GetParam());
    app.click(kRows[GetParam()]);
    app.click(kReady);
    app.listenUntil("右耳测试结束");
    app.click("准备好了，继续测试");
    app.listenUntil("测试结果");
    EXPECT_TRUE(app.hands.sees("您的右耳的平均听力损失为40分贝"));
    app.click("完成");
    app.click("测试记录");
    EXPECT_TRUE(app.hands.sees(QString("测试记录：%1").arg(round)));
    EXPECT_FALSE(app.hands.sees(QString("测试记录：%1").arg(round + 1)));
    app.click("‹ 选择设备");
  }
  nlohmann::json last;
  ORNHearingTest::getListenTestWithCompletion(
      [&](const std::optional<Error>&, const nlohmann::json& tests) { last = tests.back(); });
  app.run();
  for (const auto& [ear, thresholds] : {std::pair("left", sampleListener().left), {"right", sampleListener().right}}) {
    for (const auto& [hz, db] : thresholds) {
      EXPECT_EQ(last.at(ear + std::to_string(hz) + "hz"), std::to_string(static_cast<int>(db))) << ear << hz;
    }
  }
  EXPECT_EQ(last.at("headset"), GetParam() == 0 ? "AA:BB:CC:DD:EE:FF" : "1");
}

TEST_P(ApplicationPaths, AServiceThatFailsIsSaidAndNoTestOpens) {
  using enum service::Misbehaviour::Kind;
  const std::pair<service::Misbehaviour::Kind, QString> table[] = {
      {NoBody, "连接不上测听服务器，无法获取设备的校准数据"}, {Refuse, "测听服务器没有这台设备的校准数据"}};
  for (const auto& [kind, notice] : table) {
    Application app;
    app.start();
    app.plug(GetParam());
    app.service().misbehave({kind, {}});
    app.click(kRows[GetParam()]);
    EXPECT_TRUE(app.hands.sees(notice));
    app.click("好的");
    if (kind == Refuse && GetParam() == 1) continue;  // the test screen itself closes it
    EXPECT_TRUE(app.hands.sees("选择设备"));
    app.service().misbehave({});
    app.click(kRows[GetParam()]);
    EXPECT_TRUE(app.hands.button(kReady)) << "the row works again";
  }
}

TEST(ApplicationShop, OpensAWebPageOrSaysWhyNot) {
  Application app;
  app.start();
  const QString buy = "还没有听力检测仪？ 点此立即购买听力检测仪，即刻关爱您的听力健康。";
  QTextBrowser browser;
  QDesktopServices::setUrlHandler("https", &browser, "setSource");
  const std::string page = "https://shop.example/kv60";
  for (const auto& [setting, notice] :
       {std::pair(page, QString()), {"", "还没有设置购买页面的网址"}, {"file:///etc/hosts", "打不开购买页面"}}) {
    app.machine().userDefaults->setValue(kShopURLDefault, setting);
    app.click(buy);
    const QString alert = app.hands.alert();
    EXPECT_TRUE(notice.isEmpty() ? alert.isEmpty() : alert.contains(notice)) << alert.toStdString();
    EXPECT_EQ(browser.source().toString().toStdString(), page);
    if (!notice.isEmpty()) app.click("好的");
  }
  QDesktopServices::unsetUrlHandler("https");
}

TEST(ApplicationSound, ARealAudiometerSoundsAndItsLossEndsTheTest) {
  TestSoundServer server(ServerKind::PulseAudio);
  const std::string audiometer = server.addAudiometer();
  server.addSpeaker();
  server.control("set-default-sink audiometer");
  server.control("set-sink-volume audiometer 30%");
  const std::string before = server.volumes("audiometer");
  const auto loop = std::make_shared<QtRunLoop>();
  SimulatedPlatform others(loop);
  others.userDefaults->setValue("SERVICEHOST", std::string("given"));
  others.urlSession->script("", {std::string(simulation::sampleAudiometerReply()), std::nullopt});
  Platform machine = others.platform();
  const LinuxSound sound = linuxSound(loop, "test", server.address());
  machine.audioOutput = sound.output;
  machine.audioSession = sound.session;
  HostApplication host(machine, sampleProfile());
  ApplicationHands hands(host);
  host.open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return hands.button(kRows[0]) != nullptr; }));
  hands.click(kRows[0]);
  ASSERT_TRUE(QTest::qWaitFor([&] { return hands.button(kReady) != nullptr; }));
  EXPECT_NE(server.volumes("audiometer"), before);
  {
    const Recording recording(server, "audiometer");
    hands.click(kReady);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !recording.isSilentSince(0); }, 20'000));
  }
  server.remove(audiometer);
  ASSERT_TRUE(QTest::qWaitFor([&] { return hands.sees("您的测试设备已断开，请连接后重新测试"); }, 20'000));
  hands.click("我知道了");
  server.addAudiometer();
  EXPECT_TRUE(QTest::qWaitFor([&] { return server.volumes("audiometer") == before; }, 20'000));
}

}  // namespace
}  // namespace orn
