// No result is lost, and none is kept back: what the application does with a test's result, however it ends.
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>

#include "EndingSignals.h"
#include "ScriptedApplication.h"
#include "hearing-app/QuitSignals.h"

namespace orn {
namespace {

constexpr auto kSubmission = "/sdkJonDiagnose2/", kHistory = "/acquireListenTest";
const std::string kTaken = R"({"rspCode":0})";

struct ApplicationResults : testing::TestWithParam<int> {
  ScriptedApplication app{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Rows, ApplicationResults, testing::Values(0, 1));

TEST(ApplicationResult, ThatWasNotTakenIsOfferedUntilItIsTakenOnce) {
  const std::tuple<int, std::optional<std::string>, bool> table[] = {// row, failure, whether it was taken all the same
                                                                     {0, std::nullopt, true},
                                                                     {1, std::nullopt, true},
                                                                     {0, std::nullopt, false},
                                                                     {1, R"({"rspCode":1})", false},
                                                                     {0, "no JSON", false}};
  for (const auto& [row, failure, isTakenUnheard] : table) {
    ScriptedApplication app(row);
    const auto answerAtOpening = [&](const QString& answer) {
      app.open();
      EXPECT_EQ(app.alert(), "温馨提示|上次测试的结果还没有提交到测试记录，现在提交吗？|以后再说|现在提交");
      app.clickAndWait(answer);
    };
    app.answers(failure, 10, kSubmission);
    app.takeTest();
    app.until("没有保存到测试记录，下次打开时可以再提交");
    auto sent = nlohmann::json::parse(app.machine.urlSession->requests().back().body);
    answerAtOpening("以后再说");
    app.answers(failure, 10, kHistory);  // whether it was taken can't be known
    const std::size_t before = app.requests(kSubmission);
    answerAtOpening("现在提交");
    EXPECT_TRUE(app.sees("没有保存到测试记录"));
    app.answers(kTaken, 10, kSubmission);
    app.answers(kTaken, 10, kHistory);
    if (isTakenUnheard) {
      const auto now = app.machine.virtualTime->date().time_since_epoch();
      sent["createDate"] = std::chrono::duration<double, std::milli>(now).count();
      app.answers(nlohmann::json{{"rspCode", 0}, {"listenTests", {sent}}}.dump(), 10, kHistory);
    }
    answerAtOpening("现在提交");
    EXPECT_TRUE(app.sees("测试结果已经提交到测试记录"));
    EXPECT_EQ(app.requests(kSubmission), before + !isTakenUnheard);
    const std::string last = app.machine.urlSession->requests().back().body;
    EXPECT_TRUE(isTakenUnheard || nlohmann::json::parse(last) == sent);
    app.open();
    EXPECT_EQ(app.alert(), "");
  }
}

TEST(ApplicationResult, OnItsWayIsWaitedForByAClosedWindow) {
  for (const auto& [row, delay] : {std::pair(0, 4), {1, 30}}) {
    ScriptedApplication app(row);
    app.answers(kTaken, delay * 1000, kSubmission);
    app.takeTest();
    app.host->window().close();
    QTimer::singleShot(0, [] {  // as a signal does
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

TEST_P(ApplicationResults, OfThePreviousTestDoNotHoldUpAWindowThatEndsItsTest) {
  app.answers("{}", 150'000, kSubmission);
  app.takeTest();
  app.clickAndWait("完成");
  app.startTest();
  app.run(5);
  const std::weak_ptr<ORNHearingTest> session = app.host->session();
  app.host->window().close();
  EXPECT_TRUE(app.sees("请确认结束测试"));
  app.run(2);
  app.host->window().close();  // closing it again is the answer
  EXPECT_FALSE(app.sounds(20));
  EXPECT_FALSE(app.host->window().isVisible());
  app.host.reset();
  EXPECT_TRUE(session.expired());
}

TEST_P(ApplicationResults, ASignalInMidTestEndsTheProgramAndPutsTheVolumeBack) {
  holdEndingSignals();
  {
    const QuitSignals quitSignals;
    app.startTest();
    app.run(5);
    EXPECT_EQ(app.volume(), 1);
    raise(SIGTERM);
    EXPECT_EQ(QApplication::exec(), 0);
    app.host.reset();
    EXPECT_EQ(app.volume(), kUsersVolume) << "before the program is gone";
  }
  const sigset_t ending = endingSignals();
  pthread_sigmask(SIG_UNBLOCK, &ending, nullptr);
}

}  // namespace
}  // namespace orn
