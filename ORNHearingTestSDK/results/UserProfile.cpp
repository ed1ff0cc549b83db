#include <ORNHearingTestSDK/results/UserProfile.h>

#include <array>
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

}  // namespace

bool UserProfile::isPossibleBirthday(std::chrono::sys_seconds birthday) {
  using std::chrono::floor, std::chrono::seconds;
  const auto first = ORNUtils::birthdayFormatter().dateFromString("1900-01-01");
  return (!first || birthday >= floor<seconds>(*first)) && birthday <= floor<seconds>(std::chrono::system_clock::now());
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
  sendRequest(
      std::move(request), [profile, defaults = platform.userDefaults, main = MainQueue::current(), refusals,
                           done = std::move(completionHandler)](const ServiceReply& reply, const auto&) mutable {
        if (!reply.error()) store(*defaults, profile);
        main.dispatchAsync(
            [done = std::move(done), error = refusals == Refusals::AreErrors ? reply.failure() : reply.error()] {
              if (done) done(error);
            });
      });
}

}  // namespace orn
