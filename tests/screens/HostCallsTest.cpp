// What the screens tell their host of a test.
#include <ORNHearingTestSDK/screens/ServiceNotices.h>

#include "ScreensScript.h"

namespace orn {
namespace {

/// A host that writes down what it is told.
struct Host : ScreensScript {
  Host() {
    delegate->calibrationFailed = [this](const Error& error) { told << "failed: " + noticeOfCalibration(error); };
    delegate->shouldPresentTest = [this](const auto& test) {
      test->onComplete = [this](const FinishedTest& one) {
        told << QString("complete: %1 left, %2 right, %3")
                    .arg(one.left.size())
                    .arg(one.right.size())
                    .arg(QString::fromStdString(one.device));
        if (onComplete) onComplete();
      };
      test->onSubmitted = [this](const auto& error) { told << (error ? "not taken" : "taken"); };
      test->onLeft = [this](bool isComplete) { told << (isComplete ? "left" : "left early"); };
      return true;
    };
    select->setDelegate(delegate);
  }
  QString heard() { return std::exchange(told, {}).join("; "); }
  void until(const QString& text) {
    EXPECT_TRUE(machine.virtualTime->runUntil([&] { return sees(text); }, std::chrono::seconds(600)));
  }
  void finish() {
    click(QString("准备好了，开始测试"));
    until("右耳测试结束");
    click(QString("准备好了，继续测试"));
    run();
    machine.virtualTime->runUntil([&] { return sees("测试结果") || title() == "选择设备"; }, std::chrono::seconds(600));
  }

  QStringList told;
  std::function<void()> onComplete;
  std::shared_ptr<ORNSelectTypeDelegate> delegate = std::make_shared<ORNSelectTypeDelegate>();
};

class HostCalls : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Rows, HostCalls, testing::Values(0, 1));

TEST_P(HostCalls, TellOfEachTestHowItEndedAndOfItsResultWhetherItWasTaken) {
  Host host;
  host.openTest(GetParam());
  EXPECT_EQ(host.heard(), "");
  host.test()->dismiss();
  EXPECT_EQ(host.heard(), "left early");
  host.clickRow(GetParam());  // calibrated by the cache
  host.run();
  host.answers(std::nullopt, 20'000);
  host.finish();
  EXPECT_EQ(host.heard(), QString("complete: 4 left, 4 right, ") + (GetParam() == 0 ? "AA:BB:CC:DD:EE:FF" : "1"));
  host.click(QString("完成"));
  EXPECT_EQ(host.heard(), "left");
  host.clickRow(GetParam());
  host.run();
  EXPECT_EQ(host.title(), "右耳测试");
  host.run(20);
  EXPECT_EQ(host.heard(), "not taken") << "of the test before";
}

TEST_P(HostCalls, TellWhyNoTestOpens) {
  Host host;
  host.plug(GetParam());
  const std::pair<std::optional<std::string>, const char*> table[] = {
      {std::nullopt, "连接不上测听服务器"},
      {R"({"rspCode":3})", "没有这台设备的校准数据"},
      {calibration(1 - GetParam()), "没有这台设备的校准数据"}};
  for (const auto& [reply, why] : table) {
    host.answers(reply);
    host.clickRow(GetParam());
    host.run();
    EXPECT_TRUE(host.heard().contains(why));
    EXPECT_EQ(host.title(), "选择设备");
  }
  host.answers(std::nullopt, 5000);
  host.clickRow(GetParam());
  host.run(1);
  host.click(QString("取消"));
  host.run(5);
  EXPECT_EQ(host.heard(), "") << "given up";
}

TEST_P(HostCalls, AHostThatLeavesAtTheEndHasNothingSubmitted) {
  Host host;
  host.onComplete = [&] { host.test()->dismiss(); };
  host.openTest(GetParam());
  const auto before = host.requests();
  host.finish();
  EXPECT_TRUE(host.heard().endsWith("; left"));
  EXPECT_FALSE(host.test()->isSubmitting());
  host.run(5);
  EXPECT_EQ(host.requests(), before);
}

}  // namespace
}  // namespace orn
