#include <cstring>
#include <map>
#include <sstream>

#include <gmock/gmock.h>

#include "AllocationCounter.h"
#include "ReferenceStream.h"
#include "SessionScript.h"

namespace orn {
namespace {

using reference::Block;

/// A session on the audiometer path beside the reference. Nothing but this test pulls, since no ear is started.
struct Streams : SessionScript {
  Streams() : SessionScript(Manual, Audiometer) {
    session->setTestHzs(
        {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz", "750hz", "abc", "99999999999hz"});
    session->setAb(record("-80"));  // 60 dB is full scale
  }

  /// "1000@60" presents a cell, "now:1000@60" makes it current first, "none" leaves nothing current, "press" is a
  /// press, "*3" compares three blocks.
  void play(const std::string& script) {
    std::istringstream steps(script);
    for (std::string step; steps >> step;) {
      if (step[0] == '*') {
        for (int left = std::stoi(step.substr(1)); left > 0; --left) compare(script);
      } else if (step == "press") {
        session->listened();
        if (expected_.current) expected_.current->mustStop = true;
      } else if (step == "none") {
        session->setCurrentItem(nullptr);
        expected_.setCurrent(nullptr);
      } else {
        present(step);
      }
    }
  }

 private:
  void present(const std::string& step) {
    const bool isNow = step.starts_with("now:");
    const std::string cell = isNow ? step.substr(4) : step;
    const auto mark = cell.find('@');
    const std::string hz = cell.substr(0, mark), db = cell.substr(mark + 1);
    reference::Tone& tone = tones_[cell];
    tone.hz = std::stoi(hz);
    if (isNow) {
      session->setCurrentItem(session->manageRightDictory().at(hz + "hz").at((std::stoi(db) - 15) / 5));
      expected_.setCurrent(&tone);
    }
    session->playAtHz(hz + "hz", db);
    expected_.setCurrent(&tone);
    tone.target = session->currentItem()->zhenfu();
  }

  void compare(const std::string& script) {
    const Block wanted = expected_.next();
    const auto block = session->playerGetData();
    ++blocks_;
    ASSERT_EQ(block.size(), reference::kBytes) << script;
    EXPECT_EQ(std::memcmp(block.data(), wanted.data(), wanted.size()), 0) << script << ", block " << blocks_;
  }

  std::map<std::string, reference::Tone> tones_;
  reference::Stream expected_;
  int blocks_ = 0;
};

TEST(ToneStream, FollowsTheRulesSampleBySample) {
  const char* table[] = {
      "*2",                                                    // silence
      "1000@60 *3 none none *2",                               // the same nothing twice
      "1000@60 *4 2000@55 *6 1000@60 *6 1000@55 *6",           // one out, then one in
      "125@60 *5 1000@60 *9 125@60 *20",                       // changed while it came in
      "1000@60 *4 250@55 *1 1000@60 *9",                       // changed while the old one went out
      "125@60 *5 250@60 *2 8000@55 *4 125@60 *20",             // two changes within a fade
      "125@60 *9 250@60 8000@55 *9 125@55 *9 125@60 *20",      //
      "250@60 press *2",                                       // pressed before it came
      "250@60 *3 press *6",                                    // in the middle of its fade
      "1000@60 *4 press *4 1000@60 *2 2000@60 *4 1000@60 *6",  // at full, and silent ever after
      "1000@60 *1 1000@60 *3 2000@60 *5",                      // the same item twice: no fade in
      "now:1000@60 *2 2000@60 *3 1000@60 *6",                  // the first tone of an ear: no fade at all
      "now:1000@60 *1 press *2 500@50 *6",                     // nor one out at a press
      "500@60 *6 none *6 now:1000@60 *2",                      // the next ear begins with the old tone's fade
      "750@60 *4 1000@60 *6 750@60 *9 1000@55 *6",             // a frequency without samples
      "1000@90 *4 2000@90 *6 500@15 *9",                       // the loudest and the quietest
  };
  for (const char* script : table) Streams().play(script);
}

TEST(ToneStream, FadesEachFrequencyByItsOwnLength) {
  for (const auto& [hz, blocks] : std::map<std::string, int>{
           {"125", 16}, {"250", 8}, {"500", 4}, {"1000", 2}, {"2000", 2}, {"4000", 2}, {"8000", 2}}) {
    Streams().play(hz + "@60 *20 press *20");
    Streams test;
    const auto item = test.session->manageRightDictory().at(hz + "hz").at(9);
    test.session->testItem(item);
    for (int block = 1; block <= blocks; ++block) {
      EXPECT_LT(item->adjustzhenfu(), item->zhenfu()) << hz << " is full before block " << block;
      test.session->playerGetData();
    }
    EXPECT_GE(item->adjustzhenfu(), item->zhenfu()) << hz;
  }
}

TEST(ToneStream, EndsAtAFrequencyThatIsNoNumber) {
  for (const char* hz : {"abc", "99999999999hz"}) {
    Streams test;
    test.session->playAtHz(hz, "60");
    for (int block = 0; block < 20; ++block) {
      const auto samples = test.session->playerGetData();
      EXPECT_EQ(samples.size(), reference::kBytes);
      EXPECT_TRUE(std::all_of(samples.begin(), samples.end(), [](auto byte) { return byte == 0; })) << hz;
    }
    test.session->playAtHz("1000hz", "60");
    for (int block = 0; block < 20; ++block) test.session->playerGetData();
    reference::Tone full{.hz = 1000, .target = 1};
    const auto block = test.session->playerGetData();
    EXPECT_EQ(Block(block.begin(), block.end()), reference::steady(&full)) << hz;
  }
}

TEST(ToneStream, CarriesTheLastToneOfAnEarIntoTheNext) {
  SessionScript test(SessionScript::Auto, SessionScript::Audiometer);
  test.session->setTestHzs({"1000hz"});
  test.session->startTest(false);
  test.run(30);  // nothing was heard: 90 dB, at full scale
  test.session->startTest(true);
  test.run(4.5);
  const auto& samples = test.machine.audioOutput->keptSamples();
  const reference::Tone tone{.hz = 1000, .target = 1};
  Block wanted = reference::ramp(tone, 1, 0.5F);
  const Block end = reference::ramp(tone, 0.5F, 0);
  wanted.insert(wanted.end(), end.begin(), end.end());
  for (std::size_t i = 0; i < wanted.size() / 2; ++i) {
    const auto sample = static_cast<std::int16_t>(wanted[2 * i] | wanted[2 * i + 1] << 8);
    ASSERT_EQ(samples.at(2 * (30 * 48000 + i)), sample) << i;
  }
  EXPECT_EQ(test.loudest(30.16, 34), 0);
  EXPECT_GT(test.loudest(34.3, 34.5), 0);
}

TEST(ToneStream, TakesNoMemoryForAFadeOrASteadyTone) {
  Streams test;
  const auto pulled = [&test](int blocks) {
    return allocationsOf([&] {
      for (int left = blocks; left > 0; --left) test.session->playerGetData();
    });
  };
  test.session->playAtHz("1000hz", "60");
  EXPECT_EQ(pulled(2), 0) << "coming in";
  EXPECT_GT(pulled(1), 0) << "its cycle is made, which also shows that the library is counted";
  EXPECT_EQ(pulled(20), 0) << "steady";
  test.session->playAtHz("250hz", "60");
  EXPECT_EQ(pulled(2 + 8), 0) << "out and in";
  pulled(1);
  test.session->playAtHz("1000hz", "60");
  EXPECT_EQ(pulled(8 + 2 + 20), 0) << "a tone that has been";
  test.session->listened();
  EXPECT_EQ(pulled(20), 0) << "stopped";
}

TEST(ToneStream, StaysWithinFullScaleWhereTheRoundingOfAFadePassesIt) {
  for (const int hz : {125, 250}) {
    for (const char* level : {"-119.7", "-119.95", "-120", "-119.3"}) {
      SessionScript test(SessionScript::Manual, SessionScript::Audiometer);
      test.session->setAb(SessionScript::record(level));
      test.session->startTest(false);
      test.at(1, [&, key = std::to_string(hz) + "hz"] { test.session->playAtHz(key, "20"); });
      test.at(4, [&] { test.session->listened(); });
      test.run(7);
      const auto& samples = test.machine.audioOutput->keptSamples();
      ASSERT_GT(test.loudest(3, 4), 29000);
      const double steepest = 2 * 3.15 * hz / 48000 * 32767 + 2;
      for (std::size_t i = 2; i < samples.size(); i += 2) {
        ASSERT_LE(std::abs(samples[i] - samples[i - 2]), steepest) << hz << " at " << level << ", sample " << i / 2;
      }
    }
  }
}

}  // namespace
}  // namespace orn
