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
  const std::time_t seconds = std::mktime(&calendar);
  const auto date = std::chrono::system_clock::from_time_t(seconds);
  // mktime makes the 2nd of March of the 30th of February, and nanoseconds don't reach every year.
  if (stringFromDate(date) != text) return std::nullopt;
  return date;
}

}  // namespace orn
