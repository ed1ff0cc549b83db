#include <cstdlib>
#include <new>
#include <sstream>

#include <gmock/gmock.h>

#include "SessionScript.h"

namespace {

thread_local int allocations = 0;

void* counted(std::size_t size) {
  ++allocations;
  return std::malloc(size ? size : 1);
}

}  // namespace

// They replace the library's too, so they must be visible from outside; the other forms call these. If they were
// inlined, the compiler would see a free() of memory that came from new.
#define ORN_REPLACED __attribute__((noinline, visibility("default")))
ORN_REPLACED void* operator new(std::size_t size) {
  if (void* memory = counted(size)) return memory;
  throw std::bad_alloc();
}
ORN_REPLACED void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return counted(size); }
ORN_REPLACED void operator delete(void* memory) noexcept { std::free(memory); }
ORN_REPLACED void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace orn {
namespace {

/// A session on the audiometer path. Only this test pulls samples, since no ear is started.
struct Stream : SessionScript {
  Stream() : SessionScript(Manual, Audiometer) {
    session->setTestHzs(
        {"125hz", "250hz", "500hz", "1000hz", "2000hz", "4000hz", "8000hz", "750hz", "abc", "99999999999hz"});
    session->setAb(record("-80"));  // 60 dB is full scale
  }

  /// "1000@60" presents a cell, "now:1000@60" makes it current first, "none" leaves no cell current, "press" is a
  /// press, "*3" pulls three blocks.
  void play(const std::string& script) {
    std::istringstream steps(script);
    for (std::string step; steps >> step;) {
      if (step[0] == '*') {
        for (int left = std::stoi(step.substr(1)); left > 0; --left) pull();
      } else if (step == "press") {
        session->listened();
      } else if (step == "none") {
        session->setCurrentItem(nullptr);
      } else {
        present(step);
      }
    }
  }

  /// A sign for each block: "." silence, "<" rising, ">" falling, "=" level.
  std::string shape;
  std::uint32_t hash = 0;  ///< FNV-1a of every byte.

 private:
  void present(const std::string& step) {
    const bool isNow = step.starts_with("now:");
    const std::string cell = isNow ? step.substr(4) : step;
    const auto mark = cell.find('@');
    const std::string hz = cell.substr(0, mark) + "hz", db = cell.substr(mark + 1);
    if (isNow) session->setCurrentItem(session->manageRightDictory().at(hz).at((std::stoi(db) - 15) / 5));
    session->playAtHz(hz, db);
  }

  void pull() {
    const auto block = session->playerGetData();
    ASSERT_EQ(block.size(), 7680U);
    for (const std::uint8_t byte : block) hash = (hash ^ byte) * 16777619;
    const auto loudest = [&](std::size_t from) {  // over a cycle of 125 Hz
      int most = 0;
      for (std::size_t i = from; i < from + 768; i += 2) {
        most = std::max(most, std::abs(static_cast<std::int16_t>(block[i] | block[i + 1] << 8)));
      }
      return most;
    };
    const int begin = loudest(0), end = loudest(block.size() - 768);
    shape += begin + end == 0 ? '.' : begin < end ? '<' : begin > end ? '>' : '=';
  }
};

TEST(ToneStream, FollowsItsRulesToTheSample) {
  const std::pair<const char*, const char*> table[] = {
      {"*2", ".."},                                                               // silence
      {"1000@60 *3 none none *2", "<<=.."},                                       // no tone, set twice
      {"1000@60 *4 2000@55 *6 1000@60 *6 1000@55 *6", "<<==>><<==>><<==>><<=="},  // one out, then one in
      {"125@60 *5 1000@60 *9 125@60 *20", "<<<<<>>>>><<==>><<<<<<<<<<<<<<<<=="},  // changed while it came in
      {"1000@60 *4 250@55 *1 1000@60 *9", "<<==><========"},                      // changed while the old one went out
      {"125@60 *5 250@60 *2 8000@55 *4 125@60 *20", "<<<<<>><<==>><<<<<<<<<<<<<====="},  // two changes within a fade
      {"125@60 *9 250@60 8000@55 *9 125@55 *9 125@60 *20",
       "<<<<<<<<<<<=======>><<<<<<<>>>>>>><<<<<<<======"},  // and more
      {"250@60 press *2", ".."},                            // pressed before it came
      {"250@60 *3 press *6", "<<<>>>..."},                  // in the middle of its fade
      {"1000@60 *4 press *4 1000@60 *2 2000@60 *4 1000@60 *6",
       "<<==>>....<<==......"},                                 // at full, and silent ever after
      {"1000@60 *1 1000@60 *3 2000@60 *5", "<===><<=="},        // the same item twice: no fade in
      {"now:1000@60 *2 2000@60 *3 1000@60 *6", "==<<=>><<=="},  // the first tone of an ear: no fade at all
      {"now:1000@60 *1 press *2 500@50 *6", "=..<<<<=="},       // nor one out at a press
      {"500@60 *6 none *6 now:1000@60 *2", "<<<<==>>>>..=="},   // the next ear begins with the old fade
      {"750@60 *4 1000@60 *6 750@60 *9 1000@55 *6", "......<<==>>.........<<=="},       // a frequency without samples
      {"abc@60 *4 1000@60 *6 99999999999@60 *6 1000@55 *6", "....<<====>>......<<=="},  // or none at all
      {"1000@90 *4 2000@90 *6 500@15 *9", "<<==>><<==>><<<<==="},                       // the loudest and the quietest
      {"125@60 *18 press *18", "<<<<<<<<<<<<<<<<==>>>>>>>>>>>>>>>>.."},                 // each fade has its own length
      {"250@60 *10 press *10", "<<<<<<<<==>>>>>>>>.."},
      {"8000@60 *4 press *4", "<<==>>.."},
  };
  std::uint32_t hash = 2166136261;
  for (const auto& [script, shape] : table) {
    Stream stream;
    stream.hash = hash;
    stream.play(script);
    EXPECT_EQ(stream.shape, shape) << script;
    hash = stream.hash;
  }
  EXPECT_EQ(hash, 415210002U) << "of every sample above";
}

TEST(ToneStream, TakesNoMemoryForAFadeOrASteadyTone) {
  Stream test;
  const auto pulled = [&test](int blocks) {
    const int before = allocations;
    for (int left = blocks; left > 0; --left) test.session->playerGetData();
    return allocations - before;
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
