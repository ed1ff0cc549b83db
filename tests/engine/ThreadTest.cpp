#include <atomic>
#include <thread>

#include <gmock/gmock.h>

#include "SessionScript.h"

namespace orn {
namespace {

TEST(AudioThread, MeetsEveryChangeAndOutlivesTheSessionThatItPullsFrom) {
  SessionScript test(SessionScript::Manual, SessionScript::Audiometer);
  test.session->startTest(kRight);
  std::atomic<int> blocks = 0, wrongSizes = 0;
  // Pulls as the player does, but as fast as it can.
  std::thread audio([&, source = std::weak_ptr<PlayerGetDataSouce>(test.session)] {
    while (const auto session = source.lock()) {
      if (session->playerGetData().size() != 7680) ++wrongSizes;
      ++blocks;
      std::this_thread::yield();
    }
  });
  const auto waitForBlocks = [&](int count) {
    for (const int wanted = blocks + count; blocks < wanted;) std::this_thread::yield();
  };
  for (int round = 0; round < 50; ++round) {
    for (const char* hz : {"1000hz", "125hz", "8000hz"}) test.session->playAtHz(hz, "60");
    waitForBlocks(2);
    test.session->listened();
    test.session->pauseTest();
    test.session->continueTest();
    waitForBlocks(2);
  }
  test.session.reset();
  audio.join();
  EXPECT_EQ(wrongSizes, 0);
}

}  // namespace
}  // namespace orn
