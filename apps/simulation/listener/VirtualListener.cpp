#include "simulation/listener/VirtualListener.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <ORNHearingTestSDK/engine/PresentationClock.h>

namespace orn::simulation {
namespace {

// Two windows that differ by no more than this, in dB, have the same level; a step of the slowest fade, 1/16 of the
// amplitude, is more.
constexpr double kSameLevel = 0.5;

// A perfect listener's allowance for the rounding of quiet samples: 1 dB less what a measurement may be off, so that a
// tone a whole dB below the threshold is not heard on one path and missed on the other.
constexpr double kAllowance = 1.0 - 0.01;

// The audiometer's tone sounds on for a second after its threshold is settled. A tone that outlasts that must have been
// presented again; if it were judged sooner, the listener would press twice for one tone.
constexpr auto kLongestRest = PresentationClock::kUntilNextFrequency;

bool isSame(double a, double b) { return std::abs(a - b) <= kSameLevel; }

}  // namespace

VirtualListener::VirtualListener(ListenerTraits traits, std::chrono::seconds presentation, LevelScale levelScale,
                                 Press press)
    : traits_(std::move(traits)),
      windowsOfATone_(static_cast<int>((presentation + kLongestRest) / std::chrono::milliseconds(80))),
      levelScale_(std::move(levelScale)),
      press_(std::move(press)),
      chance_(traits_.seed) {}

void VirtualListener::hear(std::span<const std::int16_t> samples) {
  while (!samples.empty()) {
    const std::size_t count = std::min(samples.size(), window_.size() - filled_);
    std::copy_n(samples.begin(), count, window_.begin() + static_cast<std::ptrdiff_t>(filled_));
    samples = samples.subspan(count);
    filled_ += count;
    if (filled_ < window_.size()) return;
    filled_ = 0;
    hearWindow();
  }
}

void VirtualListener::hearWindow() {
  const auto level = levelOf(meter_.measure(window_));
  const bool isSteady = level && lastLevel_ && level->hz == lastLevel_->hz && isSame(level->db, lastLevel_->db);
  lastLevel_ = level;
  ++windowsSinceJudgement_;
  if (!level) {
    tone_.reset();
  } else if (isSteady && isNewTone(*level)) {
    judge(*level);
  }
}

std::optional<VirtualListener::Level> VirtualListener::levelOf(const std::array<ToneReading, 2>& readings) const {
  const auto& [left, right] = readings;
  const ToneReading& louder = left.amplitude >= right.amplitude ? left : right;
  if (louder.hz == 0) return std::nullopt;
  const auto db = levelScale_(louder.hz, louder.amplitude);
  if (!db) return std::nullopt;
  const bool isBoth = left.hz == right.hz && isSame(std::log10(left.amplitude) * 20, std::log10(right.amplitude) * 20);
  return Level{louder.hz, *db, isBoth ? Channel::Both : &louder == &left ? Channel::Left : Channel::Right};
}

bool VirtualListener::isNewTone(const Level& level) const {
  return !tone_ || tone_->hz != level.hz || !isSame(tone_->level, level.db) ||
         windowsSinceJudgement_ >= windowsOfATone_;
}

void VirtualListener::judge(const Level& level) {
  tone_ = HeardTone{level.hz, level.db, level.channel, hears(level)};
  windowsSinceJudgement_ = 0;
  if (onJudgement) onJudgement(*tone_);
  if (tone_->heard) press_(reactionTime());
}

bool VirtualListener::hears(const Level& level) {
  const auto& ear = isLeft_ ? traits_.left : traits_.right;
  const auto known = ear.find(level.hz);
  const double threshold = known == ear.end() ? traits_.thresholdElsewhere : known->second;
  const double above = level.db - threshold;
  const double audible = traits_.slope > 0 ? 1 / (1 + std::exp(-traits_.slope * above)) : above >= -kAllowance ? 1 : 0;
  const double probability = traits_.guess + (1 - traits_.guess - traits_.lapse) * audible;
  return chance_.uniform() < probability;
}

std::chrono::milliseconds VirtualListener::reactionTime() {
  if (traits_.reactionSpread <= 0) return traits_.reaction;
  const double factor = std::exp(traits_.reactionSpread * chance_.normal());
  return std::chrono::milliseconds(std::llround(static_cast<double>(traits_.reaction.count()) * factor));
}

}  // namespace orn::simulation
