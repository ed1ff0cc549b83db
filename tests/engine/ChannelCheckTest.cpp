// The check before a test finds what is wrong between the output and the ears, judged by the samples that come out.

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>

#include <ORNHearingTestSDK/engine/ChannelCheck.h>

#include "SessionScript.h"

namespace orn {
namespace {

using enum ChannelAnswer;
using Path = SessionScript::Path;

/// The loudest samples of a span, left and right.
struct Loudness {
  int left = 0, right = 0;
};

/// A person with earphones on, whose channels may be wired wrongly.
struct Listener : SessionScript {
  explicit Listener(Path path) : SessionScript(Manual, path) {
    Platform::setCurrent(machine.platform());  // with the library's own recordings
    machine.audioOutput->keepSamples();
  }
  Loudness listen(double seconds) {
    const auto& samples = machine.audioOutput->keptSamples();
    std::size_t i = samples.size();
    run(seconds);
    Loudness heard;
    for (; i < samples.size(); i += 2) {
      heard.left = std::max(heard.left, std::abs(samples[i]));
      heard.right = std::max(heard.right, std::abs(samples[i + 1]));
    }
    return heard;
  }
};

ChannelAnswer answerTo(const Loudness& heard) {
  if (heard.left > 0 && heard.right > 0) return Both;
  if (heard.left > 0) return Left;
  return heard.right > 0 ? Right : Nothing;
}

TEST(ChannelCheck, FindsWhatTheWiresDo) {
  struct Wires {  // which part of a side reaches an ear
    int leftToLeft, rightToLeft, leftToRight, rightToRight;
  };
  constexpr Wires straight{1, 0, 0, 1}, swapped{0, 1, 1, 0}, mono{1, 1, 1, 1}, toOneEar{1, 1, 0, 0},
      oneDead{1, 0, 0, 0}, dead{0, 0, 0, 0};
  using enum ChannelFinding;
  const std::tuple<Path, Wires, ChannelFinding> table[] = {
      {Path::Earphones, straight, Fine},  {Path::Earphones, swapped, Swapped}, {Path::Earphones, mono, Mixed},
      {Path::Earphones, toOneEar, Mixed}, {Path::Earphones, oneDead, Silent},  {Path::Earphones, dead, Silent},
      {Path::Audiometer, straight, Fine}, {Path::Audiometer, swapped, Fine},   {Path::Audiometer, dead, Silent}};
  for (const auto& [path, wires, finding] : table) {
    Listener listener(path);
    ChannelCheck check(*listener.session);
    EXPECT_EQ(check.tellsEarsApart(), path == Path::Earphones);
    for (int round = 0; round < 2; ++round, check.startAgain()) {
      while (!check.finding()) {
        EXPECT_FALSE(check.answer(Both)) << "nothing was played yet";
        ASSERT_EQ(check.play(), std::nullopt);
        const auto [left, right] = listener.listen(1);
        ASSERT_TRUE(check.answer(answerTo({wires.leftToLeft * left + wires.rightToLeft * right,
                                           wires.leftToRight * left + wires.rightToRight * right})));
      }
      EXPECT_EQ(check.finding(), finding);
      EXPECT_TRUE(!check.play() && answerTo(listener.listen(1)) == Nothing) << "no tone after it";
    }
  }
}

TEST(ChannelCheck, IsAsLoudAsTheTestsOwnToneAndLeavesNothingOfItBehind) {
  for (const Path path : {Path::Earphones, Path::Audiometer}) {
    Listener listener(path);
    listener.session->startTest(false);
    listener.session->playAtHz("1000hz", "60db");
    const int tests = listener.listen(2).right;
    listener.session->pauseTest();
    ChannelCheck check(*listener.session);
    check.play();
    EXPECT_EQ(listener.listen(2).right, tests);
    listener.listen(0.7);
    EXPECT_EQ(answerTo(listener.listen(5)), Nothing) << "a tone ends by itself";
    check.play();
    listener.listen(1);
    ASSERT_TRUE(check.answer(Right));
    EXPECT_EQ(answerTo(listener.listen(1)), Nothing) << "at the answer";
    check.play();
    listener.listen(1);
    check.stop();
    const auto next = ORNManualHearingTest::init();
    next->setKV50MAC(listener.session->KV50MAC());
    next->startTest(false);
    EXPECT_EQ(answerTo(listener.listen(5)), Nothing) << "in the queue of the test that follows";
    EXPECT_TRUE(listener.session->rightEarTestResultArray().empty());
  }
}

TEST(ChannelCheck, NoAnswerCountsForAToneThatDidNotSoundWhole) {
  for (const Path path : {Path::Earphones, Path::Audiometer}) {
    Listener listener(path);
    SimulatedAudioOutput& output = *listener.machine.audioOutput;
    ChannelCheck check(*listener.session);
    output.setDevicePresent(false);
    EXPECT_EQ(check.play(), ToneMissingReason::Output);
    EXPECT_FALSE(check.answer(Nothing)) << "never started";
    for (const double length : {1.0, 4.0}) {  // answered while the tone should sound, and after that
      output.setDevicePresent(true);
      ASSERT_EQ(check.play(), std::nullopt);
      listener.listen(0.5);
      output.setDevicePresent(false);
      listener.listen(length);
      EXPECT_FALSE(check.answer(Nothing)) << "lost in the middle";
    }
    output.setDevicePresent(true);
    ASSERT_EQ(check.play(), std::nullopt);
    listener.listen(2.1);
    output.setDevicePresent(false);
    listener.listen(0.2);
    EXPECT_TRUE(check.answer(Right)) << "lost after its end";
    listener.session->setAb(nullptr);
    listener.session->setRightVolue(nullptr);
    EXPECT_EQ(ChannelCheck(*listener.session).play(), ToneMissingReason::Calibration);
  }
}

}  // namespace
}  // namespace orn
