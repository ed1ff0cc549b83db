#include <ORNHearingTestSDK/common/DateFormatter.h>

#include <ctime>

#include <ORNHearingTestSDK/common/DateText.h>

namespace orn {

std::string DateFormatter::stringFromDate(std::chrono::system_clock::time_point date) const {
  return dateText(date, pattern_.c_str());
}

std::optional<std::chrono::system_clock::time_point> DateFormatter::dateFromString(const std::string& text) const {
  std::tm calendar{};
  const char* end = strptime(text.c_str(), pattern_.c_str(), &calendar);
  if (!end || end != text.c_str() + text.size()) return std::nullopt;
  calendar.tm_isdst = -1;
  const std::chrono::seconds time(std::mktime(&calendar));
  // The clock counts nanoseconds, which don't reach every year; mktime makes the 2nd of March of the 30th of February.
  constexpr auto furthest = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::duration::max());
  if (time > furthest || time < -furthest) return std::nullopt;
  const std::chrono::system_clock::time_point date(time);
  if (stringFromDate(date) != text) return std::nullopt;
  return date;
}

}  // namespace orn
