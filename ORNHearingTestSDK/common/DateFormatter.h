#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// Dates as texts of one format, in the time zone of the process. Any thread.
class ORN_EXPORT DateFormatter {
 public:
  /// By a strftime pattern such as "%Y%m%d".
  explicit DateFormatter(std::string pattern) : pattern_(std::move(pattern)) {}

  /// Empty for a date that the calendar functions don't reach.
  std::string stringFromDate(std::chrono::system_clock::time_point date) const;

  /// Nothing if the text, as a whole, is not of the format, or names a date that no calendar has.
  std::optional<std::chrono::system_clock::time_point> dateFromString(const std::string& text) const;

 private:
  std::string pattern_;
};

}  // namespace orn
