#include <ORNHearingTestSDK/results/TestCSV.h>

#include <cstdio>
#include <initializer_list>

#include <ORNHearingTestSDK/common/NumericText.h>

namespace orn {
namespace {

constexpr auto kCsvNames = "ended,device,level_verification,ear,frequency_hz,threshold_db_hl,ear_loss_db\r\n";

std::string csvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char one : text) quoted += one == '"' ? std::string("\"\"") : std::string(1, one);
  return quoted + "\"";
}

std::string utc(std::chrono::system_clock::time_point time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const auto day = std::chrono::floor<std::chrono::days>(seconds);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(seconds - day);
  char text[96];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text;
}

std::string csvLine(std::initializer_list<std::string> fields) {
  std::string text;
  for (const std::string& one : fields) text += (text.empty() ? "" : ",") + csvField(one);
  return text + "\r\n";
}

}  // namespace

std::string csvOf(const FinishedTest& test) {
  std::string csv = kCsvNames;
  for (const bool isLeft : {false, true}) {
    for (const auto& [hz, db] : isLeft ? test.left : test.right) {
      csv += csvLine({utc(test.ended), test.device, test.levelVerification, isLeft ? "left" : "right",
                      std::to_string(intValue(hz)), intValue(db) == -1 ? "" : db,
                      std::to_string(isLeft ? test.leftLoss : test.rightLoss)});
    }
  }
  return csv;
}

}  // namespace orn
