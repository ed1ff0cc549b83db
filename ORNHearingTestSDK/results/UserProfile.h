#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {

/// User defaults of the profile, beside the user's id.
inline constexpr auto kUserSexDefault = "USERSEX";  ///< true for a woman
inline constexpr auto kBirthdayDefault = "BIRTHDAY";
inline constexpr auto kPhoneDefault = "PHONE";
inline constexpr auto kUserNameDefault = "USERNAME";

/// The user of the application, as the service and the score know them.
class ORN_EXPORT UserProfile {
 public:
  using CompletionHandler = std::function<void(std::optional<Error>)>;  ///< Told an error or nothing.

  UserProfile() = delete;

  /// The birthday that a user has typed: year, month and day, as "1980-03-05", "1980/3/5", "1980.3.5" or "19800305".
  /// Nothing unless it is a day from 1900 to today: a slip of the year would give the score another age, and with it
  /// another allowance. The moment is the day's start in the time zone of the process. Any thread.
  static std::optional<std::chrono::system_clock::time_point> birthdayOf(std::string text);

  /// Registers the user with the service and, once it has answered with JSON, whatever its answer, keeps the profile in
  /// the user defaults: USERID, USERSEX, BIRTHDAY, PHONE, USERNAME. Without an id, a birthday or a phone number nothing
  /// happens and the callback is never called; else it is called once, on the main thread, with the transport's or the
  /// parser's error or with nothing; or, where refusals are errors, with the service's own. Main thread.
  static void setAppUserID(std::optional<std::string> appUserID, std::optional<std::string> username, bool isWomen,
                           std::optional<std::chrono::system_clock::time_point> birthday,
                           std::optional<std::string> phone, CompletionHandler completionHandler,
                           Refusals refusals = Refusals::LookLikeSuccess);

  /// The same, told in full: the callback is called once in every case, later and on the main thread. A refusal is an
  /// error of the domain kServiceDomain, after which the profile is kept all the same; one of kNotRegisteredDomain says
  /// that the id, the birthday or the phone number is missing, and that nothing was sent or kept. Main thread.
  static void registerUser(std::optional<std::string> appUserID, std::optional<std::string> username, bool isWomen,
                           std::optional<std::chrono::system_clock::time_point> birthday,
                           std::optional<std::string> phone, CompletionHandler completionHandler);
};

}  // namespace orn
