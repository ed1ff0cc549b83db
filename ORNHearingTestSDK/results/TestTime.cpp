#include <ORNHearingTestSDK/results/TestTime.h>

#include <chrono>
#include <cmath>

#include <ORNHearingTestSDK/common/DateText.h>

namespace orn {

std::string testTimeText(double createDate) {
  constexpr double furthest = 1e18;  // seconds; no calendar goes as far, and the number still fits
  const double seconds = std::floor(createDate / 1000);
  if (!(std::abs(seconds) < furthest)) return {};
  // In seconds, since the system clock's nanoseconds end with the year 2262.
  return dateText(std::chrono::sys_seconds(std::chrono::seconds(std::llround(seconds))), "%Y-%m-%d %H:%M:%S");
}

}  // namespace orn
