#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "simulation/listener/Chance.h"
#include "simulation/listener/ToneMeter.h"

namespace orn::simulation {

enum class Channel { Left, Right, Both };

/// A tone as a listener came to know it.
struct HeardTone {
  std::int32_t hz = 0;
  double level = 0;  ///< dB HL, measured from the samples.
  Channel channel = Channel::Both;
  bool heard = false;
};

/// What a listener's ears and hands are like.
struct ListenerTraits {
  /// Threshold in dB HL by frequency in Hz, for the left and the right ear.
  std::map<std::int32_t, double> left, right;
  double thresholdElsewhere = 20;

  /// Steepness of the psychometric function per dB, logistic; 0 is a perfect listener, who hears a tone when its level
  /// is no more than 1 dB below the threshold.
  double slope = 0;
  double guess = 0;  ///< Probability of a press for a tone that is not heard.
  double lapse = 0;  ///< Probability of no press for a tone that is heard.
  std::uint64_t seed = 1;

  /// From having judged a tone to the press; the middle one where single presses spread about it.
  std::chrono::milliseconds reaction{300};
  double reactionSpread = 0;  ///< Log-normal: deviation of the natural logarithm.
};

/// A listener who knows nothing but the samples that leave an output: measures the tone in them, turns it into a
/// hearing level, judges it once it stands still, and presses. A tone that goes on unchanged for longer than any
/// single one is judged again, as the next one. The ear under test hears both channels. One thread.
class VirtualListener {
 public:
  /// Hearing level in dB HL of a tone of that frequency and amplitude at the ear under test; nothing if unknown.
  using LevelScale = std::function<std::optional<double>(std::int32_t hz, double amplitude)>;
  using Press = std::function<void(std::chrono::milliseconds reaction)>;

  VirtualListener(ListenerTraits traits, std::chrono::seconds presentation, LevelScale levelScale, Press press);

  /// The ear under test, which is the one that hears.
  void setEar(bool isLeft) { isLeft_ = isLeft; }

  /// Hears frames of left and right samples in turn, however many, without a gap.
  void hear(std::span<const std::int16_t> samples);

  /// The tone that sounds at present, once it has been judged.
  const std::optional<HeardTone>& presentTone() const { return tone_; }

  /// Told of every judgement; the press, if any, follows after it.
  std::function<void(const HeardTone&)> onJudgement;

 private:
  struct Level {
    std::int32_t hz = 0;
    double db = 0;
    Channel channel = Channel::Both;
  };

  void hearWindow();
  std::optional<Level> levelOf(const std::array<ToneReading, 2>& readings) const;
  bool isNewTone(const Level& level) const;
  void judge(const Level& level);
  bool hears(const Level& level);
  std::chrono::milliseconds reactionTime();

  ListenerTraits traits_;
  int windowsOfATone_;
  LevelScale levelScale_;
  Press press_;
  bool isLeft_ = false;
  ToneMeter meter_;
  std::array<std::int16_t, 2 * ToneMeter::kWindowFrames> window_{};
  std::size_t filled_ = 0;
  std::optional<Level> lastLevel_;
  std::optional<HeardTone> tone_;
  int windowsSinceJudgement_ = 0;
  Chance chance_;
};

}  // namespace orn::simulation
