#include <gmock/gmock.h>

#include <ORNHearingTestSDK/engine/ORNAutoHearingTest.h>
#include <ORNHearingTestSDK/engine/ORNStandardHearingTest.h>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Lines = std::vector<std::string>;

struct ManualTest : SessionScript {
  explicit ManualTest(Path path = Earphones) : SessionScript(Manual, path) {
    session->setTestHzs({"1000hz", "2000hz", "4000hz", "500hz"});
    session->startTest(kRight);
  }

  void settle(const std::string& hz, const std::string& db) {
    session->playAtHz(hz, db);
    session->listened();
  }
  void settleAll(const std::string& db) {
    for (const char* hz : {"1000hz", "2000hz", "4000hz", "500hz"}) settle(hz, db);
  }
};

TEST(Grid, Spans15To90DbInEveryColumnOfTheListAtItsFirstRead) {
  const auto session = ORNManualHearingTest::init();
  session->setTestHzs({"1000hz", "2000hz", "4000hz", "500hz"});
  const auto& left = session->manageLeftDictory();
  session->setTestHzs({"8000hz"});
  EXPECT_THAT(session->manageLeftDictory(), SizeIs(4)) << "read before";
  EXPECT_THAT(session->manageRightDictory(), SizeIs(1));
  const auto& column = left.at("500hz");
  ASSERT_THAT(column, SizeIs(16));
  std::string up, down;
  for (auto item = column.at(0); item; item = item->nextItem()) up += item->dbValue() + " ";
  for (auto item = column.at(15); item; item = item->prevItem()) down = item->dbValue() + " " + down;
  EXPECT_EQ(up, "15db 20db 25db 30db 35db 40db 45db 50db 55db 60db 65db 70db 75db 80db 85db 90db ");
  EXPECT_EQ(down, up);
  EXPECT_EQ(column.at(5)->point().x, 3);
  EXPECT_EQ(column.at(5)->point().y, 5);
  EXPECT_EQ(column.at(5)->pan(), -1);
  EXPECT_EQ(session->manageRightDictory().at("8000hz").at(0)->pan(), 1);
}

TEST(Item, ScalesWholeSamplesAndAnOddByte) {
  ORNHearingTestItem item;
  item.setZhenfu(0.5F);
  const std::uint8_t bytes[] = {20, 0, 40};
  EXPECT_THAT(item.getData(bytes, 3), ElementsAre(10, 0, 20));
  EXPECT_THAT(item.getData(bytes, 1), ElementsAre(10));
  EXPECT_THAT(item.getData(bytes, 0), IsEmpty());
  EXPECT_THAT(item.getData(nullptr, 2), IsEmpty());
}

TEST(ResultList, IsSortedByColumnAndHoldsOneItemOfEach) {
  std::vector<std::shared_ptr<ORNHearingTestItem>> list;
  std::string columns;
  for (const double x : {2, 0, 1, 1, 8}) {
    const auto item = std::make_shared<ORNHearingTestItem>();
    item->setPoint({x, 0});
    ORNManualHearingTest::addItem(item, list);
  }
  for (const auto& item : list) columns += std::to_string(static_cast<int>(item->point().x)) + " ";
  EXPECT_EQ(columns, "0 1 2 8 ") << "8 is the retest's";
}

TEST(ManualPlay, SetsGainAndPanOfTheSharedPlayers) {
  ManualTest test;
  test.session->setRightVolue(SessionScript::record("-40"));
  test.session->playAtHz("1000hz", "40");
  EXPECT_FLOAT_EQ(test.quiet1000->volume(), 0.1F);
  EXPECT_EQ(test.quiet1000->pan(), 1);
  EXPECT_TRUE(test.quiet1000->isPlaying);
  test.session->setRightVolue(SessionScript::record("-75"));
  test.session->playAtHz("1000hz", "45");
  EXPECT_FLOAT_EQ(test.loud1000->volume(), 0.1F);
  EXPECT_FALSE(test.quiet1000->isPlaying);
  test.session->listened();
  EXPECT_FALSE(test.loud1000->isPlaying);
  test.session->startTest(kLeft);
  test.session->playAtHz("1000hz", "20");
  EXPECT_EQ(test.quiet1000->pan(), -1);
  test.session->pauseTest();
  EXPECT_FALSE(test.quiet1000->isPlaying);
  test.session->continueTest();
  EXPECT_FALSE(test.quiet1000->isPlaying) << "a stopped tone is not taken up again";
}

TEST(ManualProgress, FollowsColumnAndRowAndNeverFalls) {
  ManualTest test;
  test.session->playAtHz("500hz", "85");  // column 3, row 14
  EXPECT_FLOAT_EQ(test.session->getTestProgress(), 0.5535714F);
  test.session->playAtHz("500hz", "90");
  EXPECT_FLOAT_EQ(test.session->getTestProgress(), 0.5571428F);
  test.session->playAtHz("1000hz", "15");
  EXPECT_FLOAT_EQ(test.session->getTestProgress(), 0.5571428F);
  test.session->startTest(kRight);
  test.settle("2000hz", "15");
  EXPECT_FLOAT_EQ(test.session->getTestProgress(), 0.5F) << "two of four columns";
  test.delegate->willSelectedAtHz = nullptr;
  test.session->startTest(kRight);
  test.settle("2000hz", "15");
  EXPECT_FLOAT_EQ(test.session->getTestProgress(), 1.0F / 7) << "nobody is told, so nothing is raised";
}

TEST(ManualCompletion, NeedsAThresholdOfEveryFrequencyOfBothEarsAndComesAgainWithASecondPress) {
  ManualTest test;
  for (const char* level : {"40", "35", "30"}) test.settle("1000hz", level);
  test.settle("2000hz", "20");
  test.settle("4000hz", "25");
  EXPECT_FALSE(test.session->isOneComplete());
  test.takeTrace();
  test.settle("500hz", "90");
  EXPECT_TRUE(test.session->isOneComplete());
  const char* right = "500hz=90 1000hz=30 2000hz=20 4000hz=25";
  EXPECT_THAT(test.takeTrace(),
              ElementsAre("0 R 500hz 90db", "0 R -> 500hz 90db", std::string("0 R complete ") + right));
  EXPECT_EQ(test.session->getTestProgress(), 1);
  EXPECT_THAT(*test.session->getTestResult(kLeft), IsEmpty());
  test.session->startTest(kLeft);
  test.settleAll("15");
  EXPECT_FALSE(test.session->isOneComplete());
  test.session->listened();
  const std::string complete = std::string("0 complete L 500hz=15 1000hz=15 2000hz=15 4000hz=15 R ") + right;
  const Lines trace = test.takeTrace();
  EXPECT_THAT(Lines(trace.end() - 5, trace.end()),
              ElementsAre("0 L 500hz 15db", "0 L -> 500hz 15db", complete, "0 L -> 500hz 15db", complete));
  EXPECT_THAT(test.submissions(), ElementsAre("L 15 R 30 model", "L 15 R 30 model"));
  test.run(1);  // the service answers
}

TEST(ManualCompletion, TellsWhatBecameOfItsSubmission) {
  const struct {
    URLReply reply;
    bool isRegistered, isHeld;
    std::string told;
  } table[] = {{{R"({"rspCode":0})", {}}, true, true, "taken"},
               {{R"({"rspCode":7,"rspDesc":"no such user"})", {}}, true, true, "service: no such user"},
               {{{}, Error{"transport", 7, "gone"}}, true, true, "transport: gone"},
               {{}, false, true, "registration: nothing was sent: no application key or no user id is stored"},
               {{R"({"rspCode":7})", {}}, true, false, ""}};
  for (const auto& [reply, isRegistered, isHeld, told] : table) {
    ManualTest test;
    test.machine.urlSession->script("", reply);
    if (!isRegistered) test.machine.userDefaults->removeValue("USERID");
    std::string heard;
    test.delegate->submissionEnded = [&](ORNHearingTest& session, const std::optional<Error>& error) {
      EXPECT_EQ(&session, test.session.get());
      heard += error ? error->domain + ": " + error->message : "taken";
    };
    test.settleAll("40");
    test.session->startTest(kLeft);
    test.settleAll("40");
    EXPECT_EQ(heard, "") << "within the call";
    if (!isHeld) test.session.reset();
    test.run(1);
    EXPECT_EQ(heard, told);
  }
}

TEST(ManualStart, EmptiesTheListOfItsEarAlone) {
  ManualTest test;
  test.settle("1000hz", "40");
  test.session->startTest(kLeft);
  test.settle("1000hz", "50");
  test.session->startTest(kLeft);
  EXPECT_EQ(text(*test.session->getTestResult(kLeft)), "");
  EXPECT_EQ(text(*test.session->getTestResult(kRight)), "1000hz=40");
}

TEST(ManualPress, SilencesTheToneForGoodOnTheAudiometer) {
  ManualTest test(SessionScript::Audiometer);
  test.session->playAtHz("1000hz", "60");
  test.run(2);
  EXPECT_NEAR(test.loudest(1, 2), 32767 * 0.0316228, 2);
  test.session->pauseTest();
  test.session->continueTest();
  test.run(2);
  EXPECT_GT(test.loudest(3, 4), 0) << "after a pause";
  test.session->listened();
  EXPECT_EQ(test.session->currentItem()->hearStatus(), 1);
  test.run(2);
  EXPECT_EQ(test.loudest(4.6, 6), 0) << "after the fade and the queue of 240 ms";
  test.session->playAtHz("2000hz", "60");
  test.run(2);
  EXPECT_GT(test.loudest(7, 8), 0);
  test.session->playAtHz("1000hz", "60");
  test.run(2);
  EXPECT_EQ(test.loudest(8.6, 10), 0);
}

TEST(Factory, MakesTheSessionOfAType) {
  for (const int type : {-1, 0, 1, 2, 3}) {
    const auto session = ORNHearingTest::initWithTestType(type);
    EXPECT_EQ(std::dynamic_pointer_cast<ORNStandardHearingTest>(session) != nullptr, type == 2);
    EXPECT_EQ(std::dynamic_pointer_cast<ORNAutoHearingTest>(session) != nullptr, type != 1 && type != 2);
  }
}

TEST(Notifications, ConfigureAgainWhenAnInterruptionHasEnded) {
  ManualTest test;
  test.machine.audioSession->interrupt(0);
  EXPECT_EQ(test.machine.audioSession->timesConfigured(), 1) << "when the platform came into force, and never since";
  test.session->setupNotifications();
  test.machine.audioSession->interrupt(1);
  test.machine.audioSession->unplug();
  EXPECT_EQ(test.machine.audioSession->timesConfigured(), 1);
  test.machine.audioSession->interrupt(0);
  EXPECT_EQ(test.machine.audioSession->timesConfigured(), 2);
  test.session.reset();
  test.machine.audioSession->interrupt(0);
  EXPECT_EQ(test.machine.audioSession->timesConfigured(), 2) << "nobody is left";
}

}  // namespace
}  // namespace orn
