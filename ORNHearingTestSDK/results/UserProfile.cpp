#include <ORNHearingTestSDK/results/UserProfile.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/common/DateText.h>
#include <ORNHearingTestSDK/common/ORNUtils.h>
#include <ORNHearingTestSDK/platform/Device.h>
#include <ORNHearingTestSDK/platform/MainQueue.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>

namespace orn {
namespace {

using StoredProfile = std::array<std::pair<const char*, DefaultsValue>, 5>;

void store(UserDefaults& defaults, const StoredProfile& profile) {
  for (const auto& [key, value] : profile) {
    defaults.removeValue(key);
    defaults.setValue(key, value);
  }
  defaults.synchronize();
}

/// A day with other separators, without leading zeros or without separators, in the form of birthdayFormatter().
std::string withDashesAndZeros(std::string day) {
  constexpr std::size_t month = 5, afterMonth = 7, whole = 10;
  for (const char mark : {'/', '.'}) {
    if (std::count(day.begin(), day.end(), mark) == 2) std::replace(day.begin(), day.end(), mark, '-');
  }
  if (day.size() == 8 && day.find('-') == std::string::npos) return day.insert(6, "-").insert(4, "-");
  if (day.size() >= afterMonth && day[afterMonth - 1] == '-') day.insert(month, "0");
  if (day.size() == whole - 1) day.insert(whole - 2, "0");
  return day;
}

}  // namespace

std::optional<std::chrono::system_clock::time_point> UserProfile::birthdayOf(std::string text) {
  const DateFormatter formatter = ORNUtils::birthdayFormatter();
  const auto day = formatter.dateFromString(withDashesAndZeros(std::move(text)));
  const bool isPossible =
      day && day >= formatter.dateFromString("1900-01-01") && day <= std::chrono::system_clock::now();
  return isPossible ? day : std::nullopt;
}

void UserProfile::setAppUserID(std::optional<std::string> appUserID, std::optional<std::string> username, bool isWomen,
                               std::optional<std::chrono::system_clock::time_point> birthday,
                               std::optional<std::string> phone, CompletionHandler completionHandler,
                               Refusals refusals) {
  if (!appUserID || !birthday || !phone) return;
  const std::string name = username.value_or("");
  const Platform& platform = Platform::current();
  URLRequest request = serviceRequest("user/sdkRegister");
  setHttpHeader(request);
  setJSONBody(request, {{"sdkUseId", *appUserID},
                        {"sdkCode", platform.device->machine()},
                        {"sdkKey", appKeyOrEmpty()},
                        {"gender", isWomen ? "1" : "0"},
                        {"phone", *phone},
                        {"birthday", dateText(*birthday, "%Y%m%d")},
                        {"username", name}});
  const StoredProfile profile{{{kUserIDDefault, *appUserID},
                               {kUserSexDefault, isWomen},
                               {kBirthdayDefault, *birthday},
                               {kPhoneDefault, *phone},
                               {kUserNameDefault, name}}};
  sendRequest(std::move(request),
              [profile, defaults = platform.userDefaults, main = MainQueue::current(), refusals,
               done = std::move(completionHandler)](const ServiceReply& reply, const auto&) mutable {
                if (!reply.error()) store(*defaults, profile);
                main.tell(std::move(done), refusals == Refusals::AreErrors ? reply.failure() : reply.error());
              });
}

void UserProfile::registerUser(std::optional<std::string> appUserID, std::optional<std::string> username, bool isWomen,
                               std::optional<std::chrono::system_clock::time_point> birthday,
                               std::optional<std::string> phone, CompletionHandler completionHandler) {
  if (appUserID && birthday && phone) {
    return setAppUserID(std::move(appUserID), std::move(username), isWomen, birthday, std::move(phone),
                        std::move(completionHandler), Refusals::AreErrors);
  }
  const Error error{kNotRegisteredDomain, 0, "nothing was sent: the id, the birthday or the phone is missing"};
  MainQueue::current().tell(std::move(completionHandler), error);
}

}  // namespace orn
