// What the screens tell their host about a test.
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
        told << "complete: " + QString::fromStdString(one.device);
        if (onComplete) onComplete();
      };
      test->onSubmitted = [this](const auto& error) { told << (error ? "not taken" : "taken"); };
      test->onLeft = [this](bool isComplete) { told << (isComplete ? "left" : "left early"); };
      return true;
    };
    select->setDelegate(delegate);
  }
  QString calls() { return std::exchange(told, {}).join("; "); }
  void finish() {
    click(kReady);
    until("右耳测试结束");
    click(kOtherEar);
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
  EXPECT_EQ(host.calls(), "");
  host.test()->dismiss();
  EXPECT_EQ(host.calls(), "left early");
  host.clickRow(GetParam());  // calibrated by the cache
  host.run();
  host.answers(std::nullopt, 20'000);
  host.finish();
  EXPECT_EQ(host.calls(), GetParam() == 0 ? "complete: AA:BB:CC:DD:EE:FF" : "complete: 1");
  host.click("完成");
  EXPECT_EQ(host.calls(), "left");
  host.clickRow(GetParam());
  host.run();
  EXPECT_EQ(host.title(), "右耳测试");
  host.run(20);
  EXPECT_EQ(host.calls(), "not taken") << "of the test before";
  host.onComplete = [&] { host.test()->dismiss(); };
  const auto before = host.requests();
  host.finish();
  EXPECT_TRUE(host.calls().endsWith("; left"));
  EXPECT_FALSE(host.test()->isSubmitting());
  host.run(5);
  EXPECT_EQ(host.requests(), before) << "where the host leaves at the end";
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
    EXPECT_TRUE(host.calls().contains(why));
    EXPECT_EQ(host.title(), "选择设备");
  }
  host.answers(std::nullopt, 5000);
  host.clickRow(GetParam());
  host.run();
  host.click("取消");
  host.run(5);
  EXPECT_EQ(host.calls(), "") << "given up";
  EXPECT_FALSE(host.window->present(nullptr, host.window->navigation())) << "what a host may have in place of a test";
}

}  // namespace
}  // namespace orn
