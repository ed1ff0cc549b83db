#include "hearing-app-tools/ScreenshotWalk.h"

#include <chrono>
#include <stdexcept>
#include <nlohmann/json.hpp>

#include <QtCore/QDir>

#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>
#include <ORNHearingTestSDK/screens/ORNSelectTypeViewController.h>

#include "hearing-app-tools/SimulatedHost.h"
#include "hearing-app/CheckedDevices.h"

namespace orn {
namespace {

using nlohmann::json;

const QString kAudiometer = QStringLiteral("听力检测仪"), kEarphones = QStringLiteral("推荐耳机");
const QString kFine = QStringLiteral("好的"), kHistory = QStringLiteral("测试记录");
const QString kReady = QStringLiteral("准备好了，开始测试"), kGoOn = QStringLiteral("准备好了，继续测试");
const QString kHeard = QStringLiteral("听到了"), kCancel = QStringLiteral("取消");

constexpr std::chrono::seconds kSlow{5};  // a reply that is still on its way when the picture is taken

/// Stored tests as the service gives them, newest last.
std::string storedTests(int count) {
  json tests = json::array();
  for (int number = 0; number < count; ++number) {
    json test{{"id", std::to_string(number + 1)}, {"createDate", 1'767'225'600'000.0 + 864'000'000.0 * number}};
    const int loss = 15 + 5 * (number * 7 % 9);
    for (const char* ear : {"left", "right"}) {
      for (const char* hz : {"125", "250", "8000"}) test[std::string(ear) + hz + "hz"] = "-1";
      int more = ear[0] == 'r' ? 5 : 0;
      for (const char* hz : {"500", "1000", "2000", "4000"}) {
        test[std::string(ear) + hz + "hz"] = std::to_string(loss + more);
        more += 5;
      }
    }
    tests.push_back(test);
  }
  return tests.dump();
}

class Walk {
 public:
  Walk(const ScreenSize& screen, const QString& folder) : screen_(screen), folder_(folder) {}

  void all() {
    profile();
    selection();
    channelChecks();
    audiometerTest();
    earphoneTest();
    interruptedTests();
    histories();
    troubles();
  }

 private:
  ScreenshotScript open(const std::string& tests = "[]") {
    ScreenshotScript script(screen_, folder_, sampleProfile());
    script.answerAll(tests);
    script.open();
    return script;
  }

  void profile() {
    ScreenshotScript script(screen_, folder_, std::nullopt);
    script.answerAll("[]");
    script.open();
    script.shoot("profile");
    script.press(QStringLiteral("完成"));
    script.shoot("profile-incomplete");
    script.type(QStringLiteral("姓名"), QStringLiteral("小红"));
    script.type(QStringLiteral("出生日期"), QStringLiteral("1956-11-20"));
    script.type(QStringLiteral("手机号码"), QStringLiteral("13900000000"));
    script.press(QStringLiteral("女"));
    script.shoot("profile-complete");
    script.press(QStringLiteral("完成"));
    script.shoot("selection-woman");
  }

  void selection() {
    ScreenshotScript script = open();
    script.shoot("selection-nothing");
    script.press(kAudiometer);
    script.shoot("selection-no-audiometer");
    script.press(kFine);
    script.press(kEarphones);
    script.shoot("selection-no-earphones");
    script.press(kFine);
    script.devices().plugEarphones();
    script.run(1);
    script.shoot("selection-earphones");
    plugAudiometer(script);
    script.shoot("selection-audiometer");
    const AudioPort audiometer{"KV60S", "AA:BB:CC:DD:EE:FF-tsco"}, earphones{"Headphones", "Wired"};
    script.devices().setRoute({{}, {audiometer, earphones}}, "Headphone", SimulatedAudioSession::kNewDeviceAvailable);
    script.run(1);
    script.shoot("selection-both");
    script.press(kEarphones);
    script.shoot("selection-both-earphones-refused");
    script.press(kFine);
    script.key(Qt::Key_Tab);
    script.shoot("selection-by-keyboard");
    for (int control = 0; control < 2; ++control) script.key(Qt::Key_Tab);
    script.shoot("selection-shop-by-keyboard");
    script.holdDown(kEarphones);
    script.shoot("selection-pressed");
  }

  static void plugAudiometer(ScreenshotScript& script) {
    script.devices().plugAudiometer("KV60S", "AA:BB:CC:DD:EE:FF");
    script.run(1);
  }

  void channelChecks() {
    const QString left = QStringLiteral("左"), right = QStringLiteral("右"), nothing = QStringLiteral("没听到");
    const std::pair<const char*, std::vector<QString>> findings[] = {{"check-fine", {right, left}},
                                                                     {"check-swapped", {left, right}},
                                                                     {"check-mixed", {QStringLiteral("两侧"), left}},
                                                                     {"check-silent", {nothing, nothing}}};
    for (const auto& [name, answers] : findings) {
      ScreenshotScript script = openUnchecked(kEarphones);
      script.shoot("check");
      script.press(QStringLiteral("开始检查"));
      script.shoot("check-question");
      for (const QString& one : answers) script.press(one);
      script.shoot(name);
    }
    ScreenshotScript script = openUnchecked(kAudiometer);
    script.shoot("check-audiometer");
    script.press(QStringLiteral("开始检查"));
    script.shoot("check-audiometer-question");
  }

  ScreenshotScript openWith(const QString& device) {
    ScreenshotScript script = open();
    if (device == kEarphones) {
      script.devices().plugEarphones();
    } else {
      plugAudiometer(script);
    }
    script.answerAll("[]");
    return script;
  }

  ScreenshotScript openUnchecked(const QString& device) {
    ScreenshotScript script = openWith(device);
    script.settings().removeValue(kCheckedDevicesDefault);
    script.press(device);
    return script;
  }

  ScreenshotScript openTest(const QString& device) {
    ScreenshotScript script = openWith(device);
    script.press(device);
    script.listener().setListening(true);
    return script;
  }

  void audiometerTest() {
    ScreenshotScript script = openTest(kAudiometer);
    script.shoot("instruction");
    script.press(kReady);
    script.run(4);
    script.shoot("right-ear-first-tone");
    script.holdDown(kHeard);
    script.shoot("right-ear-heard");
    script.letGo(kHeard);
    script.run(50);
    script.shoot("right-ear");
    script.runUntilSeen(QStringLiteral("右耳测试结束"));
    script.shoot("change-of-ears");
    script.press(kGoOn);
    script.run(50);
    script.shoot("left-ear");
    result(script, "result");
  }

  void result(ScreenshotScript& script, const QString& name) {
    script.runUntilSeen(QStringLiteral("测试结果"));
    script.shoot(name);
    const QSize window = script.host().window().size();
    script.pressAt({window.width() / 2, window.height() / 4});
    script.shoot(name + "-full-view");
    script.pressAt({window.width() / 2, window.height() / 2});
    for (int page = 0; page < 3; ++page) script.key(Qt::Key_PageDown);
    script.shoot(name + "-end");
    script.press(QStringLiteral("完成"));
  }

  void earphoneTest() {
    ScreenshotScript script = openTest(kEarphones);
    script.press(kReady);
    script.runUntilSeen(QStringLiteral("右耳测试结束"));
    script.press(kGoOn);
    result(script, "earphones-result");
  }

  void interruptedTests() {
    ScreenshotScript script = openTest(kAudiometer);
    script.press(kReady);
    script.run(20);
    script.key(Qt::Key_Tab);
    script.shoot("right-ear-by-keyboard");
    script.press(kCancel);
    script.shoot("end-confirmation");
    script.press(kCancel);
    script.devices().unplug();
    script.run(1);
    script.shoot("disconnected");
    script.press(QStringLiteral("我知道了"));
    script.shoot("selection-after-disconnection");
  }

  void histories() {
    history("history-many", storedTests(40));
    history("history-one", storedTests(1));
    history("history-none", "[]");
    ScreenshotScript script = open();
    script.answer("/user/acquireListenTest", R"({"rspCode": 1, "rspDesc": "refused"})");
    script.press(kHistory);
    script.shoot("history-refused");
    script.press(kFine);
    script.press(QStringLiteral("‹ 选择设备"));
    script.answer("/user/acquireListenTest", std::nullopt, kSlow);
    script.press(kHistory);
    script.shoot("history-on-its-way");
    script.press(QStringLiteral("‹ 选择设备"));
    script.answer("/user/acquireListenTest", std::nullopt);
    script.press(kHistory);
    script.shoot("history-unreachable");
  }

  void history(const QString& name, const std::string& tests) {
    ScreenshotScript script = open(tests);
    script.press(kHistory);
    script.shoot(name);
    if (tests.size() < 10) return;
    script.pressAt({script.host().window().width() / 2, 130});
    script.shoot(name + "-result");
  }

  void troubles() {
    unregistered();
    withoutServiceHost();
    {
      ScreenshotScript script = open();
      plugAudiometer(script);
      script.answer("/user/findSdkDeviceValue", std::nullopt, kSlow);
      script.press(kAudiometer);
      script.shoot("calibration-on-its-way");
      script.press(kCancel);
      script.answer("/user/findSdkDeviceValue", std::nullopt);
      script.press(kAudiometer);
      script.shoot("calibration-unreachable");
      script.press(kFine);
      script.answer("/user/findSdkDeviceValue", R"({"rspCode": 1})");
      script.press(kAudiometer);
      script.shoot("calibration-refused");
    }
    {
      ScreenshotScript script = open();
      script.devices().plugEarphones();
      script.answer("/user/findSdkDeviceValue", R"({"rspCode": 0, "deviceVolumeIOS": []})");
      script.press(kEarphones);
      script.shoot("earphones-calibration-missing");
    }
    resultsNotTaken();
  }

  void resultsNotTaken() {
    ScreenshotScript script = openTest(kAudiometer);
    script.answer("/user/sdkJonDiagnose2", std::nullopt, kSlow);
    script.press(kReady);
    script.runUntilSeen(QStringLiteral("右耳测试结束"));
    script.press(kGoOn);
    script.runUntilSeen(QStringLiteral("测试结果"));
    script.host().window().close();
    script.run(1);
    script.shoot("result-being-submitted");
    script.reopen();
    script.shoot("result-left-over");
    script.press(QStringLiteral("现在提交"));
    script.runUntilSeen(QStringLiteral("没有保存"));
    script.shoot("result-not-stored");
  }

  void unregistered() {
    ScreenshotScript script(screen_, folder_, sampleProfile());
    script.open();
    script.shoot("service-unreachable");
    script.press(kFine);
    script.host().selection()->goToShop(nullptr);
    script.run(1);
    script.shoot("shop-not-set");
  }

  void withoutServiceHost() {
    ScreenshotScript script(screen_, folder_, sampleProfile(), "");
    script.open();
    script.shoot("service-not-set");
    script.type(QStringLiteral("服务器地址"), QStringLiteral("http://hearing.example.com/user"));
    script.press(QStringLiteral("确定"));
    script.shoot("service-wrong");
  }

  const ScreenSize screen_;
  const QString folder_;
};

}  // namespace

void walkForScreenshots(const QString& folder, const ScreenSize& screen) {
  if (!QDir().mkpath(folder)) throw std::runtime_error("can't make the folder " + folder.toStdString());
  Walk(screen, folder).all();
}

}  // namespace orn
