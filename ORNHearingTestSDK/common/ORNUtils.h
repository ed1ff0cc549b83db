#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include <ORNHearingTestSDK/common/DateFormatter.h>
#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

/// The way to the chat application in which customer service answers. The two schemes belong to that application.
struct ChatApplication {
  std::function<bool(const std::string& url)> canOpenURL;  ///< Whether the machine has an application for a URL.
  std::function<void(const std::string& url)> openURL;     ///< Opens a URL in that application.
  std::string applicationScheme;                           ///< Tells whether the application is there.
  std::string chatScheme;                                  ///< Opens a chat in it.
  std::string accountNumber = "6180339887";                ///< Whom to chat with.
};

/// Texts, dates and files for screens and host applications. What needs fonts, images or colours is ORNScreenUtils.
/// Failures show in the results alone; files, images and ages need a platform in force. Any thread unless told
/// otherwise.
class ORN_EXPORT ORNUtils {
 public:
  ORNUtils() = delete;

  static DateFormatter birthdayFormatter();  ///< "yyyy-MM-dd"
  static DateFormatter dayFormatter();       ///< "yyyyMMdd"
  static DateFormatter timeFormatter();      ///< "yyyy-MM-dd HH:mm:ss"

  /// A plain address whose last part has two to four letters; longer ones fail, which is meant, see docs/BEHAVIOURS.md.
  static bool validateEmail(std::string_view text);

  /// 13 characters beginning with "861" or 11 beginning with "1"; what follows is not looked at. Characters are counted
  /// in UTF-16 units.
  static bool isMobileNumber(std::string_view text);

  /// Indented JSON of an object or an array; nothing for any other value and for one that JSON can't hold: bytes that
  /// are not UTF-8, numbers that are not finite, more than 64 levels.
  static std::optional<std::string> objectToJSON(const nlohmann::json& object);

  /// Escapes everything but letters, digits and "-._~" (RFC 3986, section 2.3).
  static std::string encodeString(std::string_view text);

  /// Nothing if an escape is broken or the result is not UTF-8.
  static std::optional<std::string> decodeString(std::string_view text);

  /// Whole days of 86400 s, cut off towards zero. A span past 2^31 s counts as that long.
  static std::int64_t calcDaysFromBegin(std::chrono::system_clock::time_point begin,
                                        std::chrono::system_clock::time_point end);

  /// Whole years of 365 days up to now, by the platform's clock.
  static std::int64_t getUserAgeByBday(std::chrono::system_clock::time_point birthday);

  /// A file of the documents folder, named by the encoded text; always a name within that folder.
  static std::string filePathFromURL(std::string_view url);
  static bool urlfileExistsAtPath(std::string_view url);  ///< Whether that file is there.

  /// False if there was no file or it could not be removed.
  static bool urlfileRemoveAtPath(std::string_view url);

  /// Sets the way to customer service, or takes it away. Main thread.
  static void setChatApplication(std::optional<ChatApplication> chatApplication);

  /// Opens a chat with customer service; false without a chat application or where it isn't installed. Main thread.
  static bool showKefu();

  /// The file of an image of the library's own bundle, such as "bg" of type "png", at its plain resolution; nothing if
  /// there is none.
  static std::optional<std::string> pathForImageResource(const std::string& name, const std::string& ofType);
};

}  // namespace orn
