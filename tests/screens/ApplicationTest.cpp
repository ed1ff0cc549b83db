#include <memory>
#include <string>

#include <QtGui/QDesktopServices>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTextBrowser>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/qt/QtRunLoop.h>
#include <ORNHearingTestSDK/screens/NavigationWindow.h>

#include "hearing-app/HostApplication.h"
#include "hearing-app/ScreenListener.h"
#include "hearing-app/SimulatedHost.h"
#include "hearing-service/HearingService.h"
#include "simulation/SampleCalibration.h"
#include "tests/sound/SoundFixture.h"

namespace orn {
namespace {

using std::chrono::seconds;

const QString kRows[] = {"听力检测仪", "推荐耳机"};
const QString kReady = "准备好了，开始测试";

/// What a user sees of the application and clicks in it.
struct Hands {
  explicit Hands(HostApplication& host) : window(host.window()) {}

  static void settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }
  bool sees(const QString& part) const {
    for (const QLabel* one : window.findChildren<QLabel*>()) {
      if (one->isVisible() && one->text().contains(part)) return true;
    }
    return false;
  }
  template <class Widget>
  Widget* find(const QString& name) const {
    Widget* newest = nullptr;
    for (Widget* one : window.findChildren<Widget*>()) {
      if (one->isVisible() && one->accessibleName() == name) newest = one;
    }
    return newest;
  }
  void clickAt(QPoint place) {
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place);
    settle();
  }
  void click(const QString& name) {
    const auto* button = find<QAbstractButton>(name);
    ASSERT_TRUE(button) << name.toStdString();
    clickAt(button->mapTo(&window, button->rect().center()));
  }
  void type(const QString& field, const QString& text) {
    auto* line = find<QLineEdit>(field);
    clickAt(line->mapTo(&window, line->rect().center()));
    QTest::keyClicks(line, text);
  }
  NavigationWindow& window;
};

struct Application : SimulatedHost {
  void run(double span = 2) {
    machine().virtualTime->runFor(std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(span)));
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
    const auto isDue = [&] { return presses > 0 || hands.sees(part); };
    while (machine().virtualTime->runUntil(isDue, seconds(600)) && !hands.sees(part)) {
      presses = 0;
      hands.click("听到了");
    }
    listener.setListening(false);
    run();
    EXPECT_TRUE(hands.sees(part)) << part.toStdString();
  }

  int presses = 0;
  HostApplication host{platform()};
  ScreenListener listener{*machine().audioOutput, host, sampleListener(), [this] { ++presses; }};
  Hands hands{host};
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
  using service::Misbehaviour;
  const std::tuple<Misbehaviour::Kind, QString> table[] = {
      {Misbehaviour::Kind::NoBody, "连接不上测听服务器，无法获取设备的校准数据"},
      {Misbehaviour::Kind::Refuse, "测听服务器没有这台设备的校准数据"}};
  for (const auto& [kind, notice] : table) {
    Application app;
    app.start();
    app.plug(GetParam());
    app.service().misbehave({kind, {}});
    app.click(kRows[GetParam()]);
    EXPECT_TRUE(app.hands.sees(notice));
    app.click("好的");
    if (kind == Misbehaviour::Kind::Refuse && GetParam() == 1) continue;  // the test screen itself closes it
    EXPECT_TRUE(app.hands.sees("选择设备"));
    app.service().misbehave({});
    app.click(kRows[GetParam()]);
    EXPECT_TRUE(app.hands.find<QAbstractButton>(kReady)) << "the row works again";
  }
}

TEST(ApplicationShop, OpensAWebPageOrSaysWhyNot) {
  Application app;
  app.start();
  const QString buy = "还没有听力检测仪？ 点此立即购买听力检测仪，即刻关爱您的听力健康。";
  const auto press = [&](const char* setting) {
    app.machine().userDefaults->setValue(kShopURLDefault, std::string(setting));
    app.click(buy);
  };
  QTextBrowser browser;
  for (const char* scheme : {"https", "file"}) QDesktopServices::setUrlHandler(scheme, &browser, "setSource");
  press("");
  EXPECT_TRUE(app.hands.sees("还没有设置购买页面"));
  app.click("好的");
  press("file:///etc/hosts");
  EXPECT_TRUE(app.hands.sees("打不开购买页面"));
  EXPECT_EQ(browser.source(), QUrl()) << "no page of the web";
  app.click("好的");
  press("https://shop.example/kv60");
  EXPECT_EQ(browser.source(), QUrl("https://shop.example/kv60"));
  EXPECT_FALSE(app.hands.sees("购买页面"));
  for (const char* scheme : {"https", "file"}) QDesktopServices::unsetUrlHandler(scheme);
}

TEST(ApplicationSound, ARealAudiometerSoundsAndItsLossEndsTheTest) {
  TestSoundServer server(ServerKind::PulseAudio);
  std::string audiometer = server.addAudiometer();
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
  Hands hands(host);
  host.open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return hands.find<QAbstractButton>(kRows[0]) != nullptr; }));
  hands.click(kRows[0]);
  ASSERT_TRUE(QTest::qWaitFor([&] { return hands.find<QAbstractButton>(kReady) != nullptr; }));
  EXPECT_NE(server.volumes("audiometer"), before);
  {
    const Recording recording(server, "audiometer");
    hands.click(kReady);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !recording.isSilentSince(0); }, 20'000));
  }
  server.remove(audiometer);
  ASSERT_TRUE(QTest::qWaitFor([&] { return hands.sees("您的测试设备已断开，请连接后重新测试"); }, 20'000));
  hands.click("我知道了");
  EXPECT_TRUE(hands.sees("选择设备"));
  audiometer = server.addAudiometer();
  EXPECT_TRUE(QTest::qWaitFor([&] { return server.volumes("audiometer") == before; }, 20'000));
}

}  // namespace
}  // namespace orn
