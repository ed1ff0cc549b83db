#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QTextBrowser>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

#include "EndingSignals.h"
#include "Hands.h"
#include "hearing-app-tools/ScreenListener.h"
#include "hearing-app-tools/SimulatedHost.h"
#include "hearing-app/HostApplication.h"
#include "hearing-app/QuitSignals.h"
#include "hearing-service/HearingService.h"
#include "simulation/calibration/SampleCalibration.h"

namespace orn {
namespace {

using std::chrono::seconds;

const QString kRows[] = {"听力检测仪", "推荐耳机"};
const QString kReady = "准备好了，开始测试";

/// The user has checked their channels before.
void knowDevices(const SimulatedPlatform& machine) {
  machine.userDefaults->setValue("CHECKEDDEVICES", std::string("AA:BB:CC:DD:EE:FF\nHeadphones Wired Headphones\n"));
}

struct ApplicationHands : Hands {
  explicit ApplicationHands(HostApplication& application) : host(application) {}
  NavigationWindow& shown() const override { return host.window(); }
  HostApplication& host;
};

struct Application : SimulatedHost {
  Application() : service(startService()) { knowDevices(machine()); }
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

/// The service holds a test that found the sample listener's thresholds, by the device of that row.
void expectStored(Application& app, int row) {
  nlohmann::json last;
  ORNHearingTest::getListenTestWithCompletion(
      [&last](const std::optional<Error>&, const nlohmann::json& tests) { last = tests.back(); });
  app.run();
  EXPECT_EQ(last["headset"], row == 0 ? "AA:BB:CC:DD:EE:FF" : "1");
  for (const auto& [ear, thresholds] : {std::pair("left", sampleListener().left), {"right", sampleListener().right}}) {
    for (const auto& [hz, db] : thresholds)
      EXPECT_EQ(last[ear + std::to_string(hz) + "hz"], std::to_string(lround(db)));
  }
}

/// The window is exposed and painted, and whatever it asks of a service is answered.
void settleWith(SimulatedHost& machine) {
  Hands::settle();
  Hands::settle();
  machine.machine().virtualTime->runFor(seconds(2));
  Hands::settle();
}

class ApplicationPaths : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Rows, ApplicationPaths, testing::Values(0, 1));

TEST_P(ApplicationPaths, FromTheProfileToTheStoredResultInTheHistory) {
  Application app;
  app.isByFinger = GetParam() == 1;
  app.start();
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
    EXPECT_EQ(app.hands.texts().filter("测试记录：").size(), round);
    app.click("‹ 选择设备");
  }
  expectStored(app, GetParam());
}

TEST(ApplicationProfile, IsAskedForOnceAndSentUntilTheServiceHasIt) {
  SimulatedHost machine;
  service::HearingService& service = machine.startService();
  const auto alertAtOpening = [&](const std::optional<Profile>& profile) {
    HostApplication host(machine.platform(), profile);
    const ApplicationHands hands(host);
    host.open();
    settleWith(machine);
    EXPECT_TRUE(hands.sees("选择设备") && hands.sees("小明"));
    return hands.alert();
  };
  using enum service::Misbehaviour::Kind;
  const std::tuple<service::Misbehaviour::Kind, std::optional<Profile>, QString> table[] = {
      {NoBody, sampleProfile(), "连接不上"}, {Refuse, {}, "没有接受"}, {Garbage, {}, "无法识别"}};
  for (const auto& [kind, profile, why] : table) {
    service.misbehave({kind, {}});
    const QString alert = alertAtOpening(profile);
    EXPECT_TRUE(alert.contains("您的资料还没有登记") && alert.contains(why)) << alert.toStdString();
  }
  service.misbehave({});
  for (int opening = 0; opening < 2; ++opening) {
    EXPECT_EQ(alertAtOpening({}), "");
    service.misbehave({NoBody, {}});  // which is no matter any more
  }
  machine.machine().userDefaults->setValue("SERVICEHOST", std::string("localhost:1"));
  EXPECT_TRUE(alertAtOpening({}).contains("您的资料还没有登记")) << "another service does not have it";
}

TEST(ApplicationFirstUse, ASystemWithoutAFontForItsTextsIsToldInEnglish) {
  QTemporaryDir folder;
  for (const QString& fonts : {folder.path(), QString("/usr/share/fonts/truetype/dejavu")}) {
    QFile settings(folder.filePath("fonts.conf"));
    ASSERT_TRUE(settings.open(QFile::WriteOnly));
    settings.write(QString("<fontconfig><dir>%1</dir></fontconfig>").arg(fonts).toUtf8());
    settings.close();
    QProcess app;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("FONTCONFIG_FILE", settings.fileName());
    environment.insert("QT_LOGGING_RULES", "*=false");
    for (const char* home : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) environment.insert(home, folder.path());
    app.setProcessEnvironment(environment);
    app.setReadChannel(QProcess::StandardError);
    app.start(ORN_HEARING_APP, {"--simulate"});
    QByteArray said;
    while (!said.contains("apt install") && app.waitForReadyRead(20'000)) said += app.readAll();
    EXPECT_TRUE(said.contains("hearing-app: This system has no font for Chinese")) << said.toStdString();
    app.terminate();  // its window waits to be closed
    EXPECT_TRUE(app.waitForFinished(20'000));
    EXPECT_EQ(app.exitCode(), 1);
  }
}

/// A machine on which nothing is set, and a service that it does not know of.
struct NewMachine : SimulatedHost {
  NewMachine() : address("127.0.0.1:" + std::to_string(startService().port())) { setHost(""); }
  void setHost(const std::string& host) { machine().userDefaults->setValue("SERVICEHOST", host); }
  std::optional<DefaultsValue> host() { return machine().userDefaults->value("SERVICEHOST"); }
  const std::string address;
};

TEST(ApplicationFirstUse, AsksForTheServiceAndAProfileAndLetsTheServiceBeChanged) {
  NewMachine machine;
  HostApplication host(machine.platform());
  ApplicationHands hands(host);
  const auto click = [&](const QString& name) { hands.click(name), settleWith(machine); };
  const auto enter = [&](const QString& address) { hands.type("服务器地址", address), click("确定"); };
  host.open();
  settleWith(machine);
  EXPECT_FALSE(hands.button("看模拟演示")) << "where nobody can show one";
  for (const char* wrong : {"", " ", "http://service.example", "service.example/user", "a b", "https://"}) {
    enter(wrong);
    EXPECT_TRUE(hands.sees("请填写主机名") && hands.title() == "测听服务器") << wrong;
    EXPECT_EQ(machine.host(), DefaultsValue(std::string()));
  }
  enter(" " + QString::fromStdString(machine.address) + " ");
  EXPECT_EQ(machine.host(), DefaultsValue(machine.address));
  EXPECT_EQ(hands.title(), "个人资料");
  click("女");
  hands.type("出生日期", "2001-3-5");
  hands.type("手机号码", "13800000000");
  click("完成");
  EXPECT_TRUE(hands.title() == "选择设备" && hands.alert().isEmpty()) << hands.alert().toStdString();
  click("服务器");
  enter("https://localhost:1");
  EXPECT_EQ(machine.host(), DefaultsValue(std::string("https://localhost:1")));
  EXPECT_TRUE(hands.title() == "选择设备" && hands.sees("连接不上测听服务器，您的资料还没有登记"));
}

TEST(ApplicationFirstUse, LeadsToASimulationThatSaysSoThroughoutAndBack) {
  int changes = 0;
  {
    NewMachine machine;
    HostApplication host(machine.platform());
    ApplicationHands hands(host);
    host.onOtherMode = [&] { ++changes; };
    host.open();
    settleWith(machine);
    hands.click(QString("看模拟演示"));
    EXPECT_EQ(changes, 1);
  }
  NewMachine machine;  // whose service begins once the window shows
  HostApplication host(machine.platform(), sampleProfile(), Mode::Simulation);
  ApplicationHands hands(host);
  host.onOtherMode = [&] { ++changes; };
  host.open([&] { machine.setHost(machine.address); });
  settleWith(machine);
  const auto isMarked = [&] {
    return hands.sees("模拟演示 · 不是真实的听力测试") &&
           hands.shown().grab().toImage().pixelColor(3, 3) == QColor(0xfc, 0x64, 0x00);
  };
  EXPECT_TRUE(isMarked() && hands.title() == "选择设备");
  EXPECT_TRUE(hands.shown().windowTitle().contains("模拟演示"));
  machine.plugAudiometer();
  settleWith(machine);
  hands.click(kRows[0]);
  settleWith(machine);
  EXPECT_TRUE(isMarked() && hands.button(kReady)) << "there is no sound to check";
  host.selection()->testVC()->dismiss();
  settleWith(machine);
  hands.click(QString("退出演示"));
  EXPECT_EQ(changes, 2);
}

TEST(ApplicationShop, OpensAWebPageOrSaysWhyNot) {
  Application app;
  app.start();
  QTextBrowser browser;
  QDesktopServices::setUrlHandler("https", &browser, "setSource");
  for (const auto& [setting, notice] : {std::pair("https://shop.example/kv60", ""),
                                        {"", "还没有设置购买页面的网址"},
                                        {"file:///etc/hosts", "打不开购买页面"}}) {
    app.machine().userDefaults->setValue(kShopURLDefault, std::string(setting));
    app.click("还没有听力检测仪？ 点此立即购买听力检测仪，即刻关爱您的听力健康。");
    const QString alert = app.hands.alert();
    EXPECT_TRUE(*notice ? alert.contains(notice) : alert.isEmpty()) << alert.toStdString();
    if (*notice) app.click("好的");
    EXPECT_EQ(browser.source().toString(), "https://shop.example/kv60");
  }
  QDesktopServices::unsetUrlHandler("https");
}

/// The application with a scripted service; it can be closed and opened again on the same machine. Nobody presses.
struct ScriptedApplication : Hands {
  explicit ScriptedApplication(int testedRow) : row(testedRow) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
    machine.userDefaults->setValue("SERVICEHOST", std::string("service.example"));
    knowDevices(machine);
    answer("", R"({"rspCode":0})");
    answer(kCalibration, replyOf(row));
    open(sampleProfile());
    plug(row);
  }
  ~ScriptedApplication() override {
    host.reset();
    QGuiApplication::setQuitOnLastWindowClosed(true);
  }
  NavigationWindow& shown() const override { return host->window(); }
  static std::string replyOf(int row) {
    return simulation::sampleReply(row == 0 ? OutputPath::Audiometer : OutputPath::Earphones);
  }
  void answer(const std::string& part, const std::optional<std::string>& body, int milliseconds = 10) {
    const std::optional<Error> error = body ? std::nullopt : std::optional(Error{"transport", 7, "gone"});
    machine.urlSession->script(part, {body, error}, std::chrono::milliseconds(milliseconds));
  }
  std::size_t asked(const std::string& part) const {
    const auto& all = machine.urlSession->requests();
    return static_cast<std::size_t>(std::count_if(
        all.begin(), all.end(), [&](const URLRequest& one) { return one.url.find(part) != std::string::npos; }));
  }
  void plug(int which) {
    which == 0 ? machine.audioSession->plugAudiometer("KV60S", simulation::kSimulatedAddress)
               : machine.audioSession->plugEarphones();
    run(1);
  }
  void open(const std::optional<Profile>& profile = {}) {
    host.reset();
    host = std::make_unique<HostApplication>(machine.platform(), profile);
    host->open();
    settle();  // exposes the window
    run(1);
  }
  void run(int time) {
    settle();
    machine.virtualTime->runFor(seconds(time));
    settle();
  }
  void click(const QString& name) {
    Hands::click(name);
    run(1);
  }
  void startTest() {
    click(kRows[row]);
    click(kReady);
  }
  void runUntil(const QString& text) {
    EXPECT_TRUE(machine.virtualTime->runUntil([&] { return sees(text); }, seconds(600))) << text.toStdString();
  }
  void takeTest() {
    startTest();
    runUntil("右耳测试结束");
    click("准备好了，继续测试");
    runUntil("测试结果");
  }

  static constexpr auto kCalibration = "/findSdkDeviceValue", kSubmission = "/sdkJonDiagnose2/";
  const int row;
  SimulatedPlatform machine;
  std::unique_ptr<HostApplication> host;
};

/// What comes out of the output within a span, by ear.
QString heardFrom(SimulatedPlatform& machine, seconds span = seconds(1)) {
  const auto isHeard = std::make_shared<std::array<bool, 2>>();
  machine.audioOutput->addListener([isHeard](std::int64_t, std::span<const std::int16_t> samples) {
    for (std::size_t i = 0; i < samples.size(); ++i) (*isHeard)[i % 2] = (*isHeard)[i % 2] || samples[i] != 0;
  });
  machine.virtualTime->runFor(span);
  Hands::settle();
  if ((*isHeard)[0] && (*isHeard)[1]) return "有声音";
  return (*isHeard)[0] ? "左" : (*isHeard)[1] ? "右" : "没听到";
}

/// The check of a device's channels, and a user who has a word for each of what comes out.
struct CheckedApplication : ScriptedApplication {
  explicit CheckedApplication(int checkedRow) : ScriptedApplication(checkedRow) {
    machine.userDefaults->removeValue("CHECKEDDEVICES");
    machine.audioSession->setOutputVolume(kUsersVolume);
    click(kRows[row]);
    EXPECT_EQ(title(), "声音检查");
    EXPECT_EQ(volume(), 1);
  }
  static constexpr float kUsersVolume = 0.25F;
  float volume() const { return machine.audioSession->outputVolume(); }
  bool isAskedFor() {
    click(kRows[row]);
    return title() == "声音检查";
  }
};

TEST(ApplicationChannels, WhatIsWrongIsSaidAndNoTestBeginsWithTheWrongEars) {
  using Words = std::map<QString, QString>;
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
      if (isAgain) app.click("再查一次");
      app.Hands::click(QString("开始检查"));
      while (app.button("再听一次")) app.Hands::click(words.at(heardFrom(app.machine)));
      EXPECT_TRUE(app.sees(says)) << says.toStdString();
      EXPECT_EQ(app.button("进入测试") || app.button("仍然进入测试"), !goesOnBy.isEmpty());
    }
    if (goesOnBy.isEmpty()) continue;
    app.click(goesOnBy);
    EXPECT_TRUE(app.title() == "右耳测试" && app.volume() == 1);
    app.host->selection()->testVC()->dismiss();
    app.run(1);
    EXPECT_TRUE(app.title() == "选择设备" && app.volume() == app.kUsersVolume);
    EXPECT_EQ(app.isAskedFor(), says != "声音正常") << "before the first test only";
    app.open();
    EXPECT_EQ(app.isAskedFor(), says != "声音正常") << "also after another start";
  }
}

TEST_P(ApplicationPaths, TheCheckOfTheChannelsCanBeLeftAndSkipped) {
  CheckedApplication app(GetParam());
  app.Hands::click(QString("开始检查"));
  app.Hands::click(QString("取消"));
  EXPECT_EQ(heardFrom(app.machine), "没听到") << "after the screen has gone";
  EXPECT_TRUE(app.title() == "选择设备" && app.volume() == app.kUsersVolume);
  EXPECT_TRUE(app.isAskedFor()) << "not done yet";
  app.click("跳过检查");
  EXPECT_EQ(app.title(), "右耳测试");
}

TEST(ApplicationChannels, AToneThatDoesNotSoundIsNoAnswer) {
  CheckedApplication app(1);
  app.machine.audioOutput->setDevicePresent(false);
  app.click("开始检查");
  EXPECT_TRUE(app.alert().contains("测试设备没有播放声音"));
  app.click("我知道了");
  app.machine.audioOutput->setDevicePresent(true);
  app.Hands::click(QString("开始检查"));
  app.machine.audioOutput->setHeldBack(true);
  app.run(1);
  app.machine.audioOutput->setHeldBack(false);
  app.Hands::click(QString("没听到"));
  EXPECT_TRUE(app.sees("声音没有播放完整") && app.sees("第 1 次，共 2 次"));
  app.Hands::click(QString("再听一次"));
  EXPECT_EQ(heardFrom(app.machine), "右");
  app.Hands::click(QString("右"));
  EXPECT_TRUE(app.sees("第 2 次，共 2 次"));
  EXPECT_EQ(heardFrom(app.machine), "左");
  app.machine.audioSession->unplug();
  app.run(1);
  EXPECT_TRUE(app.alert().contains("您的测试设备已断开"));
  app.click("我知道了");
  EXPECT_EQ(app.title(), "选择设备");
}

/// A good reply without its second record, or without the first one's value at 500 Hz.
std::string incomplete(int row, bool isWhole) {
  auto reply = nlohmann::json::parse(ScriptedApplication::replyOf(row));
  auto& records = reply["deviceVolumeIOS"];
  isWhole ? (void)records.erase(1) : (void)records[0].erase("s500");
  return reply.dump();
}

TEST_P(ApplicationPaths, NoTestOpensWithoutItsOwnDevicesCalibrationAndNoneIsKept) {
  const int row = GetParam();
  const QString none = "测听服务器没有这台设备的校准数据，无法测试。";
  const std::pair<std::optional<std::string>, QString> useless[] = {
      {std::nullopt, "连接不上测听服务器，无法获取设备的校准数据"},
      {R"({"rspCode":1})", none},
      {R"({"rspCode":0})", none},
      {"no JSON", none},
      {incomplete(row, true), none},
      {incomplete(row, false), none},
      {ScriptedApplication::replyOf(1 - row), none}};
  for (const auto& [reply, notice] : useless) {
    SCOPED_TRACE(reply.value_or("none"));
    ScriptedApplication app(1 - row);
    app.click(kRows[1 - row]);
    app.host->selection()->testVC()->dismiss();  // another device's test was well calibrated
    app.plug(row);
    app.answer(app.kCalibration, reply);
    for (const std::size_t taps : {1U, 2U}) {
      app.click(kRows[row]);
      EXPECT_TRUE(app.alert().contains(notice)) << app.alert().toStdString();
      app.click("好的");
      EXPECT_EQ(app.title(), "选择设备");
      EXPECT_EQ(app.asked(app.kCalibration), 1 + taps);
    }
    if (row == 0 && reply) {  // as a host that judges nothing leaves it
      const std::string file = app.machine.fileManager->documentsDirectory() + "/__AA_BB_CC_DD_EE_FF";
      app.machine.fileManager->writeAtomically(file, std::vector<std::uint8_t>(reply->begin(), reply->end()));
      app.click(kRows[row]);
      EXPECT_EQ(app.title(), "选择设备") << "from the cache";
      app.click("好的");
    }
    app.answer(app.kCalibration, ScriptedApplication::replyOf(row));
    app.click(kRows[row]);
    EXPECT_TRUE(app.button(kReady)) << "the row works again";
  }
}

TEST_P(ApplicationPaths, AResultThatWasNotTakenIsOfferedUntilItIsTakenOnce) {
  const QString question = "温馨提示|上次测试的结果还没有提交到测试记录，现在提交吗？|以后再说|现在提交";
  const std::string taken = R"({"rspCode":0})";
  const std::optional<std::string> failures[] = {std::nullopt, R"({"rspCode":1})", "no JSON"};
  for (const bool isTakenUnheard : {false, true}) {
    for (const auto& failure : failures) {
      ScriptedApplication app(GetParam());
      const auto answerAtOpening = [&](const QString& answer) {
        app.open();
        EXPECT_EQ(app.alert(), question);
        app.click(answer);
      };
      app.answer(app.kSubmission, failure);
      app.takeTest();
      app.runUntil("没有保存到测试记录，下次打开时可以再提交");
      auto sent = nlohmann::json::parse(app.machine.urlSession->requests().back().body);
      answerAtOpening("以后再说");
      app.answer("/acquireListenTest", failure);  // whether it was taken can't be known
      const std::size_t before = app.asked(app.kSubmission);
      answerAtOpening("现在提交");
      EXPECT_TRUE(app.sees("没有保存到测试记录"));
      app.answer(app.kSubmission, taken);
      app.answer("/acquireListenTest", taken);
      if (isTakenUnheard) {
        const auto now = app.machine.virtualTime->date().time_since_epoch();
        sent["createDate"] = std::chrono::duration<double, std::milli>(now).count();
        app.answer("/acquireListenTest", nlohmann::json{{"rspCode", 0}, {"listenTests", {sent}}}.dump());
      }
      answerAtOpening("现在提交");
      EXPECT_TRUE(app.sees("测试结果已经提交到测试记录"));
      EXPECT_EQ(app.asked(app.kSubmission), before + !isTakenUnheard);
      const std::string last = app.machine.urlSession->requests().back().body;
      EXPECT_TRUE(isTakenUnheard || nlohmann::json::parse(last) == sent);
      app.open();
      EXPECT_EQ(app.alert(), "");
    }
  }
}

TEST_P(ApplicationPaths, AClosedWindowWaitsForAResultOnItsWay) {
  for (const int delay : {4, 30}) {
    ScriptedApplication app(GetParam());
    app.answer(app.kSubmission, R"({"rspCode":0})", delay * 1000);
    app.takeTest();
    app.host->window().close();
    QTimer::singleShot(0, [] {  // as at a signal
      QApplication::quit();
      QApplication::exit();
    });
    QApplication::exec();
    EXPECT_EQ(app.alert(), "温馨提示|正在提交测试结果…");
    app.run(delay == 4 ? 3 : 9);
    EXPECT_TRUE(app.host->window().isVisible());
    app.run(2);
    EXPECT_FALSE(app.host->window().isVisible());
    app.open();
    EXPECT_EQ(app.alert().isEmpty(), delay == 4);
  }
}

TEST_P(ApplicationPaths, ClosingTheWindowEndsATestEvenWithTheLastOnesResultOnItsWay) {
  ScriptedApplication app(GetParam());
  app.answer(app.kSubmission, "{}", 150'000);
  app.takeTest();
  app.click("完成");
  app.startTest();
  app.run(5);
  const std::weak_ptr<ORNHearingTest> session = app.host->session();
  app.host->window().close();
  EXPECT_TRUE(app.sees("请确认结束测试"));
  app.run(2);
  app.host->window().close();  // once more, which is the answer
  EXPECT_EQ(heardFrom(app.machine, seconds(20)), "没听到");
  EXPECT_FALSE(app.host->window().isVisible());
  app.host.reset();
  EXPECT_TRUE(session.expired());
}

TEST_P(ApplicationPaths, ASignalInMidTestEndsTheProgramAndPutsTheVolumeBack) {
  holdEndingSignals();
  {
    const QuitSignals quitSignals;
    ScriptedApplication app(GetParam());
    app.machine.audioSession->setOutputVolume(0.25F);
    app.startTest();
    app.run(5);
    EXPECT_EQ(app.machine.audioSession->outputVolume(), 1);
    raise(SIGTERM);
    EXPECT_EQ(QApplication::exec(), 0);
    app.host.reset();
    EXPECT_EQ(app.machine.audioSession->outputVolume(), 0.25F) << "before the program is gone";
  }
  const sigset_t ending = endingSignals();
  pthread_sigmask(SIG_UNBLOCK, &ending, nullptr);
}

}  // namespace
}  // namespace orn
