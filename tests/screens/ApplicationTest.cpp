#include <QtGui/QDesktopServices>
#include <QtWidgets/QTextBrowser>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

#include "EndingSignals.h"
#include "Hands.h"
#include "hearing-app/HostApplication.h"
#include "hearing-app/QuitSignals.h"
#include "hearing-app/ScreenListener.h"
#include "hearing-app/SimulatedHost.h"
#include "hearing-service/HearingService.h"
#include "simulation/OutputMonitor.h"
#include "simulation/SessionCalibration.h"
#include "simulation/VirtualListener.h"
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
  Application() : service(startService()) {}
  void run() {
    machine().virtualTime->runFor(seconds(2));
    Hands::settle();
  }
  void press(const QString& name) { isByFinger ? hands.touch(hands.button(name)) : hands.click(name); }
  void click(const QString& name) {
    press(name);
    run();
  }
  void start() {
    host.open();
    run();
    hands.type("出生日期", "2001-3-5");
    hands.type("手机号码", "13800000000");
    click("完成");
    EXPECT_TRUE(hands.sees("请选择性别")) << "nothing is taken for granted";
    EXPECT_EQ(hands.shown().focusWidget()->accessibleName(), "男");
    click("女");
    hands.type("姓名", "Li");
    click("完成");
    EXPECT_TRUE(hands.sees("选择设备") && hands.sees("Li"));
  }
  void plug(int row) {
    row == 0 ? plugAudiometer() : machine().audioSession->plugEarphones();
    run();
  }
  /// The listener takes the test that is open, by real clicks or touches, until the screen says so.
  void listenUntil(const QString& part) {
    listener.setListening(true);
    while (machine().virtualTime->runUntil([&] { return presses > 0 || hands.sees(part); }, seconds(600)) &&
           !hands.sees(part)) {
      presses = 0;
      press("听到了");
    }
    listener.setListening(false);
    run();
    EXPECT_TRUE(hands.sees(part)) << part.toStdString();
  }

  service::HearingService& service;
  bool isByFinger = false;
  int presses = 0;
  HostApplication host{platform()};
  ScreenListener listener{*machine().audioOutput, host, sampleListener(), [this] { ++presses; }};
  ApplicationHands hands{host};
};

/// The service holds a test that found the listener's thresholds, by the device of that row.
template <class Wait>
void expectStored(int row, const simulation::ListenerTraits& traits, Wait waitUntil) {
  const auto last = std::make_shared<nlohmann::json>();
  ORNHearingTest::getListenTestWithCompletion(
      [last](const std::optional<Error>&, const nlohmann::json& tests) { *last = tests.back(); });
  waitUntil([&] { return !last->is_null(); });
  for (const auto& [ear, thresholds] : {std::pair("left", traits.left), {"right", traits.right}}) {
    for (const auto& [hz, db] : thresholds) {
      EXPECT_EQ(last->at(ear + std::to_string(hz) + "hz"), std::to_string(static_cast<int>(db))) << ear << hz;
    }
  }
  EXPECT_EQ(last->at("headset"), row == 0 ? "AA:BB:CC:DD:EE:FF" : "1");
}

class ApplicationPaths : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Rows, ApplicationPaths, testing::Values(0, 1));

TEST_P(ApplicationPaths, FromTheProfileToTheStoredResultInTheHistory) {
  Application app;
  app.isByFinger = GetParam() == 1;
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
  expectStored(GetParam(), sampleListener(), [&](const auto&) { app.run(); });
}

TEST_P(ApplicationPaths, AServiceThatFailsIsSaidAndNoTestOpens) {
  using enum service::Misbehaviour::Kind;
  const std::pair<service::Misbehaviour::Kind, QString> table[] = {
      {NoBody, "连接不上测听服务器，无法获取设备的校准数据"}, {Refuse, "测听服务器没有这台设备的校准数据"}};
  for (const auto& [kind, notice] : table) {
    Application app;
    app.start();
    app.plug(GetParam());
    app.service.misbehave({kind, {}});
    app.click(kRows[GetParam()]);
    EXPECT_TRUE(app.hands.sees(notice));
    app.click("好的");
    if (kind == Refuse && GetParam() == 1) continue;  // the test screen itself closes it
    EXPECT_TRUE(app.hands.sees("选择设备"));
    app.service.misbehave({});
    app.click(kRows[GetParam()]);
    EXPECT_TRUE(app.hands.button(kReady)) << "the row works again";
  }
}

TEST(ApplicationProfile, IsAskedForOnceAndSentUntilTheServiceHasIt) {
  SimulatedHost machine;
  service::HearingService& service = machine.startService();
  const auto alertAtOpening = [&](const std::optional<Profile>& profile) {
    HostApplication host(machine.platform(), profile);
    const ApplicationHands hands(host);
    host.open();
    Hands::settle();  // exposes the window
    Hands::settle();  // has painted it and meets the service
    machine.machine().virtualTime->runFor(seconds(2));
    Hands::settle();
    EXPECT_TRUE(hands.sees("选择设备") && hands.sees("小明"));
    return hands.alert();
  };
  service.misbehave({service::Misbehaviour::Kind::NoBody, {}});
  for (const auto& profile : {std::optional(sampleProfile()), std::optional<Profile>()}) {
    EXPECT_TRUE(alertAtOpening(profile).contains("您的资料还没有登记"));
  }
  service.misbehave({});
  for (int opening = 0; opening < 2; ++opening) {
    EXPECT_EQ(alertAtOpening({}), "");
    service.misbehave({service::Misbehaviour::Kind::NoBody, {}});  // which is no matter any more
  }
  machine.machine().userDefaults->setValue("SERVICEHOST", std::string());
  EXPECT_TRUE(alertAtOpening({}).contains("还没有设置测听服务器"));
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

/// The application on the wall's clock, perhaps a hasty one, with a real sound server's audiometer and a service.
struct SoundApplication {
  explicit SoundApplication(const std::shared_ptr<RunLoop>& loop) : others(loop) {
    others.startService();
    server.addSpeaker();
    server.setDefault("audiometer");
    server.control("set-sink-volume audiometer 21% 64%");
    volumes = server.volumes("audiometer");
    Platform machine = others.platform();
    const LinuxSound sound = linuxSound(loop, "test", server.address());
    machine.audioOutput = sound.output;
    machine.audioSession = sound.session;
    host = std::make_unique<HostApplication>(machine, sampleProfile());
    hands = std::make_unique<ApplicationHands>(*host);
    host->open();
    until([this] { return hands->sees("已连接"); });
    hands->click(kRows[0]);
    until([this] { return hands->button(kReady) != nullptr; });
    EXPECT_NE(server.volumes("audiometer"), volumes);
  }
  template <class Condition>
  static void until(Condition holds) {
    EXPECT_TRUE(QTest::qWaitFor(holds, 60'000));
  }
  void startTest() {
    const Recording recording(server, "audiometer");
    hands->click(kReady);
    until([&] { return !recording.isSilentSince(0); });
  }
  void untilTheVolumeIsBack() {
    until([this] { return server.volumes("audiometer") == volumes; });
  }

  TestSoundServer server{ServerKind::PulseAudio};
  std::string audiometer = server.addAudiometer(), volumes;
  SimulatedHost others;
  std::unique_ptr<HostApplication> host;
  std::unique_ptr<ApplicationHands> hands;
};

TEST(ApplicationSound, AWholeTestIsHeardFromARealAudiometerAndIsStored) {
  const auto loop = std::make_shared<HastyLoop<QtRunLoop>>(3);
  SoundApplication app(loop);
  const auto session = std::dynamic_pointer_cast<ORNManualHearingTest>(app.host->session());
  simulation::ListenerTraits traits;  // found by three tones each
  traits.left = {{500, 35}, {1000, 40}, {2000, 40}, {4000, 35}};
  traits.right = {{500, 40}, {1000, 35}, {2000, 35}, {4000, 40}};
  simulation::VirtualListener listener(
      traits, seconds(1),
      [&](int hz, double amplitude) { return levelOf(*session, simulation::OutputPath::Audiometer, hz, amplitude); },
      [&](std::chrono::milliseconds) {
        if (const QAbstractButton* heard = app.host->heardButton()) app.hands->click(heard);
      });
  const simulation::OutputMonitor monitor(
      app.server.address(), "audiometer.monitor", [&](std::span<const std::int16_t> samples) {
        loop->dispatchAsync([&, heard = std::vector(samples.begin(), samples.end())] {
          listener.setEar(session->isTestLeft());
          listener.hear(heard);
        });
      });
  app.hands->click(kReady);
  app.until([&] { return app.hands->sees("右耳测试结束"); });
  app.hands->click(QString("准备好了，继续测试"));
  app.until([&] { return app.hands->sees("测试结果"); });
  app.untilTheVolumeIsBack();
  app.hands->click(QString("完成"));
  app.hands->click(QString("测试记录"));
  app.until([&] { return app.hands->sees("测试记录：1"); });
  expectStored(0, traits, [&](const auto& holds) { app.until(holds); });
}

TEST(ApplicationSound, LossOfTheAudiometerEndsTheTest) {
  SoundApplication app(std::make_shared<QtRunLoop>());
  const std::string elsewhere = app.server.volumes("speaker");
  app.startTest();
  app.server.remove(app.audiometer);
  app.until([&] { return app.hands->sees("您的测试设备已断开，请连接后重新测试"); });
  app.hands->click(QString("我知道了"));
  app.host->selection()->setTestVC(nullptr);
  EXPECT_EQ(app.server.volumes("speaker"), elsewhere);
  app.server.addAudiometer();
  app.untilTheVolumeIsBack();
}

TEST(ApplicationSound, ASignalInMidTestPutsTheVolumeBack) {
  holdEndingSignals();
  {
    SoundApplication app(std::make_shared<QtRunLoop>());
    const QuitSignals quitSignals;
    app.startTest();
    raise(SIGTERM);
    EXPECT_EQ(QApplication::exec(), 0);
    app.host.reset();
    EXPECT_EQ(app.server.volumes("audiometer"), app.volumes) << "before the program is gone";
  }
  const sigset_t ending = endingSignals();
  pthread_sigmask(SIG_UNBLOCK, &ending, nullptr);
}

}  // namespace
}  // namespace orn
