#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>

#include "simulation/listener/Chance.h"
#include "simulation/listener/ToneMeter.h"

namespace orn::simulation {

enum class Channel { Left, Right, Both };

/// A tone as a listener judged it.
struct HeardTone {
  std::int32_t hz = 0;
  double level = 0;  ///< dB HL, measured from the samples.
  Channel channel = Channel::Both;
  bool heard = false;
};

/// How a listener hears and presses.
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

  /// From the judgement of a tone to the press; the median where there is a spread.
  std::chrono::milliseconds reaction{300};
  double reactionSpread = 0;  ///< Log-normal: standard deviation of the natural logarithm.
};

/// A listener who knows nothing but the samples that leave an output: measures the tone in them, turns it into a
/// hearing level, judges it once it is steady, and presses. A tone that goes on unchanged for longer than a
/// presentation is judged again, as the next presentation. The ear under test hears both channels. One thread.
class VirtualListener {
 public:
  /// Hearing level in dB HL of a tone of that frequency and amplitude at the ear under test; nothing if unknown.
  using LevelScale = std::function<std::optional<double>(std::int32_t hz, double amplitude)>;
  using Press = std::function<void(std::chrono::milliseconds reaction)>;

  VirtualListener(ListenerTraits traits, std::chrono::seconds presentation, LevelScale levelScale, Press press);

  /// The ear under test, which is the one that hears.
  void setEar(bool isLeft) { isLeft_ = isLeft; }

  /// Takes any number of interleaved left and right samples, without a gap between calls.
  void hear(std::span<const std::int16_t> samples);

  /// The tone that sounds at present, once it has been judged.
  const std::optional<HeardTone>& presentTone() const { return tone_; }

  /// Called at every judgement; the press, if there is one, follows.
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
