#include <gmock/gmock.h>

#include <ORNHearingTestSDK/engine/ORNStandardHearingTest.h>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Lines = std::vector<std::string>;

struct StandardTest : SessionScript {
  explicit StandardTest(Path path = Earphones) : SessionScript(Standard, path) {}

  /// The retest is what comes after the threshold of 8000 Hz.
  void runToTheRetest(bool isLeft) {
    delegate->willSelectedAtHz = [this](ORNHearingTest& told, const std::string& hz, const std::string& db, bool) {
      thresholds.push_back(hz + " " + db);
      if (isHasty && thresholds.size() == 5) told.listened();
    };
    session->startTest(isLeft);
    machine.virtualTime->runUntil([this] { return thresholds.size() == 4; }, std::chrono::seconds(500));
    takeTrace();
  }

  Lines thresholds;
  bool isHasty = false;  // the host presses when it is told of the retest's threshold
};

/// A right ear in which nothing is heard before the retest, which goes by the letters. The tone of 500 Hz after it.
struct Retested : StandardTest {
  explicit Retested(const std::string& letters, Path path = Earphones, bool hasty = false) : StandardTest(path) {
    isHasty = hasty;
    onTone = [this](const std::string& hz, const std::string& db, float volume) {
      if (thresholds.size() == 4) levels += std::to_string(std::atoi(db.c_str())) + " ", volumes.push_back(volume);
      if (volumes.size() == 1) progress = session->getTestProgress();
      if (thresholds.size() == 5 && hz == "500hz") tones.push_back(now());
    };
    presses(std::string(4 * 7, 'N') + letters);
    runToTheRetest(kRight);
    machine.virtualTime->runUntil([this] { return thresholds.size() == 5; }, std::chrono::seconds(100));
    acceptance = now();
    run(3.9);
  }

  std::string levels;
  std::vector<float> volumes;
  float progress = 0;
  double acceptance = 0;
  std::vector<double> tones;
};

TEST(StandardTimes, PresentTheNextFrequencyTwiceAfterAHeardAcceptanceAndOnceAfterAnUnheard) {
  const std::pair<const char*, Lines> table[] = {
      {"HHHHHHHH", {"36 R -> 1000hz 15db", "36 R 2000hz 60db", "37 R 2000hz 60db", "40 R 2000hz 65db"}},
      {"HHHNNHNNN", {"36 R 1000hz 40db", "40 R -> 1000hz 40db", "41 R 2000hz 60db", "44 R 2000hz 65db"}}};
  for (const auto& [letters, last] : table) {
    StandardTest test;
    test.presses(letters);
    test.session->startTest(kRight);
    test.run(last == table[0].second ? 41 : 45);
    const Lines trace = test.takeTrace();
    EXPECT_EQ(Lines(trace.end() - 4, trace.end()), last);
  }
}

TEST(StandardTimes, DoNothingWithoutATone) {
  StandardTest test;
  dynamic_cast<ORNStandardHearingTest&>(*test.session).hasListened();
  EXPECT_THAT(test.takeTrace(), IsEmpty());
}

TEST(StandardRetest, GivesTheValueOf1000HzInAResultOfSevenKeysWhateverTheListOfTheHost) {
  const std::pair<int, const char*> table[] = {{-5, "-5"}, {0, "0"}, {91, "90"}};
  for (const auto& [hearing, value] : table) {
    StandardTest test;
    test.session->setTestHzs({"1000hz", "2000hz", "500hz"});
    test.hearsFrom(hearing);
    const std::string rest = hearing > 90 ? "90" : "15";
    std::string whole, order;
    for (const char* hz : {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz"}) {
      whole += " " + std::string(hz) + "=" + (hz == std::string("1000hz") ? value : rest);
    }
    test.session->startTest(kRight);
    test.run(400);
    const Lines right = test.takeTrace();
    for (const std::string& line : right) {
      if (const auto at = line.find("-> "); at != line.npos) order += line.substr(at + 3, line.rfind(' ') - at - 2);
    }
    EXPECT_EQ(order, "1000hz 2000hz 4000hz 8000hz 1000hz 500hz 250hz 125hz ");
    EXPECT_EQ(right.back().substr(right.back().find(' ')), " R complete" + whole);
    test.session->startTest(kLeft);
    test.run(400);
    const Lines left = test.takeTrace();
    EXPECT_EQ(left.front(), "404 L 1000hz 60db") << "the clock of the first ear has ended";
    EXPECT_EQ(left.back().substr(left.back().find(' ')), " complete L" + whole + " R" + whole);
    EXPECT_THAT(test.submissions(), SizeIs(1));
  }
}

TEST(StandardRetest, StandsAboveAWholeProgressUntilTheEarIsComplete) {
  Retested test("");
  EXPECT_FLOAT_EQ(test.progress, 8.0F / 7 + 0.1285714285714286F) << "an odd row";
  EXPECT_GE(test.session->getTestProgress(), test.progress);
  test.run(300);
  EXPECT_EQ(test.session->getTestProgress(), 1);
  test.session->startTest(kLeft);
  EXPECT_EQ(test.session->getTestProgress(), 0);
}

TEST(StandardRetest, IsPannedToTheLeftForBothEars) {
  for (const bool isLeft : {kRight, kLeft}) {
    StandardTest test;
    std::vector<float> pans;
    test.onTone = [&](const std::string& hz, const std::string& db, float) {
      if (hz == "1000hz" && db == "60db") pans.push_back(test.loud1000->pan());
    };
    test.runToTheRetest(isLeft);
    test.run(30);
    EXPECT_THAT(pans, ElementsAre(isLeft ? -1 : 1, -1));
  }
}

TEST(StandardRetest, SoundsAtItsLabelOnEarphonesAnd20DbAboveItOnTheAudiometer) {
  // With 60 dB of calibration at the recording's 140 dB, and with 50 dB at full scale's 140 dB.
  EXPECT_FLOAT_EQ(Retested("").volumes.at(0), 1);
  EXPECT_NEAR(Retested("", SessionScript::Audiometer).volumes.at(0), 0.0316228, 1e-6);  // 60 dB, not 40
}

TEST(StandardRetest, LeavesTheNextToneSilentAfterAnUnheardAcceptanceOnTheAudiometer) {
  Retested unheard("HHNNHNNN", SessionScript::Audiometer);
  EXPECT_EQ(unheard.levels, "40 30 20 25 30 20 25 30 ");
  EXPECT_THAT(unheard.tones, ElementsAre(unheard.acceptance + 1));
  // The old tone has faded out and left the queue of 240 ms.
  EXPECT_EQ(unheard.loudest(unheard.acceptance + 0.6, unheard.acceptance + 3.9), 0);
  unheard.run(2);
  EXPECT_GT(unheard.loudest(unheard.acceptance + 5, unheard.acceptance + 5.5), 0) << "65 dB is another item";

  Retested hasty("HHNNHNNN", SessionScript::Audiometer, true);
  EXPECT_EQ(hasty.loudest(hasty.acceptance + 0.6, hasty.acceptance + 3.9), 0);

  Retested heard("HHNNHNNH", SessionScript::Audiometer);
  EXPECT_THAT(heard.tones, ElementsAre(heard.acceptance, heard.acceptance + 1));
  EXPECT_NEAR(heard.loudest(heard.acceptance + 0.6, heard.acceptance + 3.9), 32767 * 0.0316228, 2);
}

}  // namespace
}  // namespace orn
