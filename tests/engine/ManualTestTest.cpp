#include <gmock/gmock.h>

#include <ORNHearingTestSDK/engine/ORNAutoHearingTest.h>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct ManualTest : SessionScript {
  explicit ManualTest(Path path = Earphones) : SessionScript(Manual, path) {
    session->setTestHzs({"1000hz", "2000hz", "4000hz", "500hz"});
    session->startTest(kRight);
  }

  void settle(const std::vector<std::pair<std::string, std::string>>& tones) {
    for (const auto& [hz, db] : tones) session->playAtHz(hz, db), session->listened();
  }
  void settleAll(const std::string& db) { settle({{"1000hz", db}, {"2000hz", db}, {"4000hz", db}, {"500hz", db}}); }
};

TEST(Grid, HasTheColumnsOfTheListAtItsFirstRead) {
  const auto session = ORNManualHearingTest::init();
  session->setTestHzs({"1000hz", "2000hz", "4000hz", "500hz"});
  EXPECT_THAT(session->manageLeftDictory().at("500hz"), SizeIs(16));
  session->setTestHzs({"8000hz"});
  EXPECT_THAT(session->manageLeftDictory(), SizeIs(4)) << "read before";
  EXPECT_THAT(session->manageRightDictory(), SizeIs(1));
}

TEST(Item, ScalesWholeSamplesAndAnOddByte) {
  ORNHearingTestItem item;
  item.setZhenfu(0.5F);
  const std::uint8_t bytes[] = {20, 0, 40};
  EXPECT_THAT(item.getData(bytes, 3), ElementsAre(10, 0, 20));
  EXPECT_THAT(item.getData(bytes, 0), IsEmpty());
  EXPECT_THAT(item.getData(nullptr, 2), IsEmpty());
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
  test.session->playAtHz("750hz", "20");
  EXPECT_FALSE(test.quiet1000->isPlaying) << "outside the grid";
  test.session->playAtHz("1000hz", "20");
  test.session->pauseTest();
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
  test.settle({{"2000hz", "15"}});
  EXPECT_FLOAT_EQ(test.session->getTestProgress(), 0.5F) << "two of four columns";
  test.delegate->willSelectedAtHz = nullptr;
  test.session->startTest(kRight);
  test.settle({{"2000hz", "15"}});
  EXPECT_FLOAT_EQ(test.session->getTestProgress(), 1.0F / 7) << "nobody is told, so nothing is raised";
}

TEST(ManualCompletion, NeedsAThresholdAtEveryFrequencyOfBothEarsAndComesAgainWithASecondPress) {
  ManualTest test;
  test.settle({{"2000hz", "20"}, {"1000hz", "40"}, {"1000hz", "30"}, {"4000hz", "25"}});
  EXPECT_FALSE(test.session->isOneComplete());
  EXPECT_EQ(test.session->rightEarTestResultArray().front()->hzValue(), "1000hz") << "in the list's order";
  test.takeTrace();
  test.settle({{"500hz", "90"}});
  const std::string right = "500hz=90 1000hz=30 2000hz=20 4000hz=25";
  EXPECT_THAT(test.takeTrace(), ElementsAre("0 R 500hz 90db", "0 R -> 500hz 90db", "0 R complete " + right));
  EXPECT_EQ(test.session->getTestProgress(), 1);
  test.session->startTest(kLeft);
  test.settleAll("15");
  EXPECT_FALSE(test.session->isOneComplete());
  test.session->listened();
  const std::string complete = "0 complete L 500hz=15 1000hz=15 2000hz=15 4000hz=15 R " + right;
  const Lines trace = test.takeTrace();
  EXPECT_THAT(Lines(trace.end() - 4, trace.end()),
              ElementsAre("0 L -> 500hz 15db", complete, "0 L -> 500hz 15db", complete));
  EXPECT_THAT(test.submissions(), ElementsAre("L 15 R 30 model", "L 15 R 30 model"));
  test.run(1);  // the service answers
}

TEST(ManualCompletion, TellsWhatBecameOfItsSubmissionAsLongAsThereIsASession) {
  for (const bool isHeld : {true, false}) {
    ManualTest test;
    test.machine.urlSession->script("", {R"({"rspCode":7,"rspDesc":"no such user"})", {}});
    std::string heard;
    test.delegate->submissionEnded = [&](ORNHearingTest& session, const std::optional<Error>& error) {
      EXPECT_EQ(&session, test.session.get());
      heard += error->message;
    };
    test.settleAll("40");
    test.session->startTest(kLeft);
    test.settleAll("40");
    EXPECT_EQ(heard, "") << "within the call";
    if (!isHeld) test.session.reset();
    test.run(1);
    EXPECT_EQ(heard, isHeld ? "no such user" : "");
  }
}

TEST(ManualPress, SilencesTheToneOnTheAudiometerAndAPauseOnlyHoldsIt) {
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
}

TEST(ManualEnd, LeavesTheSharedPlayersToTheNextSession) {
  ManualTest test;
  test.session->playAtHz("1000hz", "40");
  test.session->endTest();
  EXPECT_FALSE(test.quiet1000->isPlaying);
  const auto next = ORNManualHearingTest::init();
  next->setRightVolue(SessionScript::record("-60"));
  next->startTest(kRight);
  next->playAtHz("1000hz", "40");
  test.session->listened();
  test.session->pauseTest();
  EXPECT_TRUE(test.quiet1000->isPlaying);
}

TEST(Factory, MakesAnAutomaticSessionForAnUnknownType) {
  for (const int type : {-1, 3}) {
    EXPECT_TRUE(std::dynamic_pointer_cast<ORNAutoHearingTest>(ORNHearingTest::initWithTestType(type)));
  }
}

TEST(Notifications, ConfigureAgainWhenAnInterruptionHasEnded) {
  ManualTest test;
  auto& audio = *test.machine.audioSession;
  test.session->setupNotifications();
  audio.interrupt(1);
  audio.unplug();
  EXPECT_EQ(audio.timesConfigured(), 1) << "when the platform came into force, and never since";
  audio.interrupt(0);
  EXPECT_EQ(audio.timesConfigured(), 2);
  test.session.reset();
  audio.interrupt(0);
  EXPECT_EQ(audio.timesConfigured(), 2) << "nobody is left";
}

}  // namespace
}  // namespace orn
