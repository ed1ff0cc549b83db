#include <ORNHearingTestSDK/common/DateText.h>

#include <array>
#include <ctime>

namespace orn {

std::string dateText(std::chrono::system_clock::time_point date, const char* pattern) {
  return dateText(std::chrono::floor<std::chrono::seconds>(date), pattern);
}

std::string dateText(std::chrono::sys_seconds date, const char* pattern) {
  const auto seconds = static_cast<std::time_t>(date.time_since_epoch().count());
  std::tm calendar{};
  if (!localtime_r(&seconds, &calendar)) return {};
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), pattern, &calendar)};
}

}  // namespace orn
