#include <ORNHearingTestSDK/platform/LoopedRecording.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace orn {

LoopedRecording::LoopedRecording(std::vector<std::int16_t> samples) : samples_(std::move(samples)) {}

void LoopedRecording::setNumberOfLoops(int loops) {
  // After the last pass no other one has begun.
  if (!isEmpty()) pass_ = left() > 0 ? place_ / size() : place_ / size() - 1;
  loops_ = loops;
}

std::int64_t LoopedRecording::left() const {
  if (isEmpty()) return 0;
  if (loops_ < 0) return std::numeric_limits<std::int64_t>::max();
  return (pass_ + loops_ + 1) * size() - place_;
}

std::span<const std::int16_t> LoopedRecording::next(std::int64_t most) const {
  if (isEmpty()) return {};
  const std::int64_t at = place_ % size();
  const std::int64_t count = std::max<std::int64_t>(0, std::min({most, left(), size() - at}));
  return std::span(samples_).subspan(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
}

void LoopedRecording::move(std::int64_t samples) { place_ += std::max(-place_, std::min(samples, left())); }

void LoopedRecording::rewind() { place_ = pass_ = 0; }

}  // namespace orn
