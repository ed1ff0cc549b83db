// What the screens tell their host about a test.
#include <ORNHearingTestSDK/screens/ServiceNotices.h>

#include "ScreensScript.h"

namespace orn {
namespace {

/// A host that writes down what it is told.
struct HostCalls : testing::TestWithParam<int>, ScreensScript {
  HostCalls() {
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
    clickAndWait(kOtherEar);
    machine.virtualTime->runUntil([&] { return sees("测试结果") || title() == "选择设备"; }, std::chrono::seconds(600));
  }

  QStringList told;
  std::function<void()> onComplete;
  std::shared_ptr<ORNSelectTypeDelegate> delegate = std::make_shared<ORNSelectTypeDelegate>();
};

INSTANTIATE_TEST_SUITE_P(Rows, HostCalls, testing::Values(0, 1));

TEST_P(HostCalls, TellOfEachTestHowItEndedAndOfItsResultWhetherItWasTaken) {
  openTest(GetParam());
  EXPECT_EQ(calls(), "");
  test()->dismiss();
  EXPECT_EQ(calls(), "left early");
  clickAndWait(kRows[GetParam()]);  // calibrated by the cache
  answers(std::nullopt, 20'000);
  finish();
  EXPECT_EQ(calls(), GetParam() == 0 ? "complete: AA:BB:CC:DD:EE:FF" : "complete: 1");
  click("完成");
  EXPECT_EQ(calls(), "left");
  clickAndWait(kRows[GetParam()]);
  EXPECT_EQ(title(), "右耳测试");
  run(20);
  EXPECT_EQ(calls(), "not taken") << "of the test before";
  onComplete = [&] { test()->dismiss(); };
  const auto before = requests();
  finish();
  EXPECT_TRUE(calls().endsWith("; left"));
  EXPECT_FALSE(test()->isSubmitting());
  run(5);
  EXPECT_EQ(requests(), before) << "where the host leaves at the end";
}

TEST_P(HostCalls, TellWhyNoTestOpens) {
  plug(GetParam());
  const std::pair<std::optional<std::string>, const char*> table[] = {
      {std::nullopt, "连接不上测听服务器"},
      {R"({"rspCode":3})", "没有这台设备的校准数据"},
      {calibration(1 - GetParam()), "没有这台设备的校准数据"}};
  for (const auto& [reply, why] : table) {
    answers(reply);
    clickAndWait(kRows[GetParam()]);
    EXPECT_TRUE(calls().contains(why));
    EXPECT_EQ(title(), "选择设备");
  }
  answers(std::nullopt, 5000);
  clickAndWait(kRows[GetParam()]);
  click("取消");
  run(5);
  EXPECT_EQ(calls(), "") << "given up";
  EXPECT_FALSE(window->present(nullptr, window->navigation())) << "what a host may have in place of a test";
  const auto own = NavigationController::initWithRootViewController(ORNSelectTypeViewController::init());
  EXPECT_TRUE(window->present(own, window->navigation()));
  EXPECT_TRUE(window->dismiss(own));
  EXPECT_TRUE(own->screens().empty()) << "though the host still has it";
}

}  // namespace
}  // namespace orn
