#include <gmock/gmock.h>

#include <ORNHearingTestSDK/engine/ORNStandardHearingTest.h>

#include "SessionScript.h"

namespace orn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct StandardTest : SessionScript {
  explicit StandardTest(Path path = Earphones) : SessionScript(Standard, path) {
    delegate->willSelectedAtHz = [this, told = delegate->willSelectedAtHz](ORNHearingTest& test, const std::string& hz,
                                                                           const std::string& db, bool isLeft) {
      told(test, hz, db, isLeft);
      thresholds += hz + " ";
      if (++settled == 5 && isHasty) test.listened();
    };
  }

  std::string thresholds;
  int settled = 0;
  bool isHasty = false;  // the host presses when it is told of the retest's threshold
};

/// A right ear in which nothing is heard before the retest, which goes by the letters. The tone of 500 Hz after it.
struct Retested : StandardTest {
  explicit Retested(const std::string& letters, Path path = Earphones, bool hasty = false) : StandardTest(path) {
    isHasty = hasty;
    onTone = [this](const std::string& hz, const std::string& db, float gain) {
      if (settled == 4 && levels.empty()) volume = gain, pan = quiet1000->pan(), progress = session->getTestProgress();
      if (settled == 4) levels += std::to_string(std::atoi(db.c_str())) + " ";
      if (settled == 5 && hz == "500hz") tones.push_back(now());
    };
    presses(std::string(4 * 7, 'N') + letters);
    session->startTest(kRight);
    // The retest comes after the threshold at 8000 Hz, and gives the fifth threshold.
    machine.virtualTime->runUntil([&] { return settled == 5; }, std::chrono::seconds(500));
    acceptance = now();
    run(3.9);
  }

  std::string levels;
  float volume = 0, pan = 0, progress = 0;  // of its first tone, at 40 dB
  double acceptance = 0;
  std::vector<double> tones;
};

TEST(StandardTimes, PresentTheNextFrequencyTwiceAfterAHeardAcceptanceAndOnceAfterAnUnheardOne) {
  const std::tuple<const char*, int, Lines> table[] = {
      {"HHHHHHHH", 41, {"36 R -> 1000hz 15db", "36 R 2000hz 60db", "37 R 2000hz 60db", "40 R 2000hz 65db"}},
      {"HHHNNHNNN", 45, {"36 R 1000hz 40db", "40 R -> 1000hz 40db", "41 R 2000hz 60db", "44 R 2000hz 65db"}}};
  for (const auto& [letters, seconds, last] : table) {
    StandardTest test;
    test.presses(letters);
    const Lines trace = test.traceOfEar(kRight, seconds);
    EXPECT_EQ(Lines(trace.end() - 4, trace.end()), last);
  }
}

TEST(StandardTimes, DoNothingWithoutATone) {
  StandardTest test;
  dynamic_cast<ORNStandardHearingTest&>(*test.session).hasListened();
  EXPECT_THAT(test.takeTrace(), IsEmpty());
}

TEST(StandardRetest, GivesTheValueOf1000HzInAResultOfSevenKeysWhateverTheListOfTheHost) {
  const std::tuple<int, std::string, std::string> table[] = {{-5, "-5", "15"}, {0, "0", "15"}, {91, "90", "90"}};
  for (const auto& [hearing, value, rest] : table) {
    StandardTest test;
    test.session->setTestHzs({"1000hz", "2000hz", "500hz"});
    test.hearsFrom(hearing);
    std::string whole;
    for (const std::string hz : {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz"}) {
      whole += " " + hz + "=" + (hz == "1000hz" ? value : rest);
    }
    EXPECT_THAT(test.traceOfEar(kRight, 400).back(), testing::EndsWith(" R complete" + whole));
    EXPECT_EQ(test.thresholds, "1000hz 2000hz 4000hz 8000hz 1000hz 500hz 250hz 125hz ");
    const Lines left = test.traceOfEar(kLeft, 400);
    EXPECT_EQ(left.front(), "404 L 1000hz 60db") << "the clock of the first ear has ended";
    EXPECT_THAT(left.back(), testing::EndsWith(" complete L" + whole + " R" + whole));
    EXPECT_THAT(test.submissions(), SizeIs(1));
    EXPECT_EQ(test.session->hzs().at(4), "1000hz_re");
  }
}

TEST(StandardRetest, OfTheRightEarIsPannedToTheLeftAndHasProgressAboveOneUntilTheEarIsComplete) {
  Retested test("");
  EXPECT_EQ(test.pan, -1);
  EXPECT_FLOAT_EQ(test.progress, 8.0F / 7 + 0.1285714285714286F) << "an odd row";
  EXPECT_GE(test.session->getTestProgress(), test.progress);
  test.run(300);
  EXPECT_EQ(test.session->getTestProgress(), 1);
}

TEST(StandardRetest, SoundsAtItsLabelOnEarphonesAnd20DbAboveItOnTheAudiometer) {
  // Full scale is 140 dB: 40 (level) + 40 (quiet recording) + 60 (record); 60 (level) + 50 (record) is 30 dB below it.
  EXPECT_FLOAT_EQ(Retested("").volume, 1);
  EXPECT_NEAR(Retested("", SessionScript::Audiometer).volume, 0.0316228, 1e-6);  // 60 dB, not 40
}

TEST(StandardRetest, LeavesTheNextToneSilentAfterAnUnheardAcceptanceOnTheAudiometer) {
  Retested unheard("HHNNHNNN", SessionScript::Audiometer);
  EXPECT_EQ(unheard.levels, "40 30 20 25 30 20 25 30 ");
  EXPECT_THAT(unheard.tones, ElementsAre(unheard.acceptance + 1));
  // By now the old tone has faded out and left the queue of 240 ms.
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
