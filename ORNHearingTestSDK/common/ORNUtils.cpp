#include <ORNHearingTestSDK/common/ORNUtils.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/JsonReading.h>
#include <ORNHearingTestSDK/common/PercentEscapes.h>
#include <ORNHearingTestSDK/platform/FileManager.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {
namespace {

using std::chrono::system_clock;

// Subtracted as seconds, since centuries in nanoseconds overflow.
double secondsBetween(system_clock::time_point begin, system_clock::time_point end) {
  const auto secondsOf = [](auto date) { return std::chrono::duration<double>(date.time_since_epoch()).count(); };
  return secondsOf(end) - secondsOf(begin);
}

bool isLetter(char c) { return isLetterOrDigit(c) && c > '9'; }

/// At least one character, each a letter, a digit or one of the others.
bool consistsOf(std::string_view text, std::string_view others) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [others](char c) {
    return isLetterOrDigit(c) || others.find(c) != std::string_view::npos;
  });
}

/// Characters beyond 16 bits, which take four bytes in UTF-8, count twice.
std::size_t utf16Length(std::string_view text) {
  std::size_t length = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    length += (byte & 0xC0) == 0x80 ? 0U : byte >= 0xF0 ? 2U : 1U;
  }
  return length;
}

bool isJson(const nlohmann::json& value, int depth) {
  if (value.is_number_float()) return std::isfinite(value.get<double>());
  if (!value.is_structured()) return true;
  return depth < kDeepestJson &&
         std::all_of(value.begin(), value.end(), [depth](const auto& part) { return isJson(part, depth + 1); });
}

std::optional<ChatApplication>& chatSlot() {
  static std::optional<ChatApplication> application;
  return application;
}

}  // namespace

DateFormatter ORNUtils::birthdayFormatter() { return DateFormatter("%Y-%m-%d"); }
DateFormatter ORNUtils::dayFormatter() { return DateFormatter("%Y%m%d"); }
DateFormatter ORNUtils::timeFormatter() { return DateFormatter("%Y-%m-%d %H:%M:%S"); }

bool ORNUtils::validateEmail(std::string_view text) {
  const auto at = text.find('@');
  if (at == std::string_view::npos) return false;
  const std::string_view name = text.substr(0, at), host = text.substr(at + 1);
  const auto dot = host.rfind('.');
  if (dot == std::string_view::npos) return false;
  const std::string_view top = host.substr(dot + 1);
  return consistsOf(name, "._%+-") && consistsOf(host.substr(0, dot), ".-") && top.size() >= 2 && top.size() <= 4 &&
         std::all_of(top.begin(), top.end(), isLetter);
}

bool ORNUtils::isMobileNumber(std::string_view text) {
  const std::size_t length = utf16Length(text);
  return (length == 13 && text.starts_with("861")) || (length == 11 && text.starts_with('1'));
}

std::optional<std::string> ORNUtils::objectToJSON(const nlohmann::json& object) {
  if (!object.is_structured() || !isJson(object, 0)) return std::nullopt;
  try {
    return object.dump(2);
  } catch (const nlohmann::json::exception&) {
    return std::nullopt;
  }
}

std::string ORNUtils::encodeString(std::string_view text) { return percentEscaped(text, kUnreserved); }

std::optional<std::string> ORNUtils::decodeString(std::string_view text) { return percentUnescaped(text); }

std::int64_t ORNUtils::calcDaysFromBegin(system_clock::time_point begin, system_clock::time_point end) {
  using Limits = std::numeric_limits<std::int32_t>;
  const double seconds = std::clamp<double>(secondsBetween(begin, end), Limits::min(), Limits::max());
  return static_cast<std::int32_t>(seconds) / 86400;
}

std::int64_t ORNUtils::getUserAgeByBday(system_clock::time_point birthday) {
  const double days = std::trunc(secondsBetween(birthday, Platform::current().runLoop->date()) / 86400.0);
  return static_cast<std::int64_t>(std::trunc(days / 365.0));
}

std::string ORNUtils::filePathFromURL(std::string_view url) {
  std::string name = encodeString(url);
  // The two names that would lead out of the folder, or to the folder itself.
  if (name == ".") name = "%2E";
  if (name == "..") name = "%2E%2E";
  return Platform::current().fileManager->documentsDirectory() + "/" + name;
}

bool ORNUtils::urlfileExistsAtPath(std::string_view url) {
  return Platform::current().fileManager->fileExists(filePathFromURL(url));
}

bool ORNUtils::urlfileRemoveAtPath(std::string_view url) {
  // An empty text names the documents folder.
  return !url.empty() && Platform::current().fileManager->removeFile(filePathFromURL(url));
}

void ORNUtils::setChatApplication(std::optional<ChatApplication> chatApplication) {
  chatSlot() = std::move(chatApplication);
}

bool ORNUtils::showKefu() {
  const std::optional<ChatApplication> chat = chatSlot();
  if (!chat || !chat->canOpenURL || !chat->openURL || chat->applicationScheme.empty() || chat->chatScheme.empty()) {
    return false;
  }
  if (!chat->canOpenURL(chat->applicationScheme + "://")) return false;
  chat->openURL(chat->chatScheme + "://im/chat?chat_type=wpa&uin=" + encodeString(chat->accountNumber) +
                "&version=1&src_type=web");
  return true;
}

std::optional<std::string> ORNUtils::pathForImageResource(const std::string& name, const std::string& ofType) {
  const FileManager& files = *Platform::current().fileManager;
  const auto bundle = files.resourceBundle("image.bundle");
  if (!bundle || (name + ofType).find('/') != std::string::npos) return std::nullopt;
  const std::string path = *bundle + "/" + name + "." + ofType;
  if (!files.fileExists(path)) return std::nullopt;
  return path;
}

}  // namespace orn
