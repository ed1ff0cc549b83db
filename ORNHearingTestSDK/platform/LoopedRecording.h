#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// A recording that a player goes through once or more, and the place where it is. One thread at a time.
class ORN_EXPORT LoopedRecording {
 public:
  explicit LoopedRecording(std::vector<std::int16_t> samples);  ///< At its beginning, to be played once.

  bool isEmpty() const { return samples_.empty(); }  ///< Whether there is no sample.

  /// As AudioPlayer::setNumberOfLoops, counted from the pass that is going on.
  void setNumberOfLoops(int loops);

  /// Samples from here to the end of the last pass; the greatest number where there is no end.
  std::int64_t left() const;

  /// The next samples in one piece: no more than asked for, and not beyond the end of a pass. Empty at the end.
  std::span<const std::int16_t> next(std::int64_t most) const;

  /// Goes on, or back if negative, by that many samples; not beyond the beginning or the end.
  void move(std::int64_t samples);

  /// Back to the beginning, with all loops to go.
  void rewind();

 private:
  std::int64_t size() const { return static_cast<std::int64_t>(samples_.size()); }

  std::vector<std::int16_t> samples_;
  std::int64_t place_ = 0;  // counted on over all passes
  std::int64_t pass_ = 0;   // the one from which on the loops count
  int loops_ = 0;
};

}  // namespace orn
