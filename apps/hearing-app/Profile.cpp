#include "hearing-app/Profile.h"

#include <chrono>
#include <string>
#include <utility>

#include <QtCore/QUuid>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

namespace orn {
namespace {

using std::chrono::system_clock;

/// A setting: the service that has taken the profile.
constexpr auto kRegisteredWith = "PROFILEREGISTERED";

UserDefaults& defaults() { return *Platform::current().userDefaults; }

template <class Value>
std::optional<Value> kept(const char* key) {
  const auto value = defaults().value(key);
  const auto* found = value ? std::get_if<Value>(&*value) : nullptr;
  return found ? std::optional(*found) : std::nullopt;
}

}  // namespace

bool isProfileKept() {
  return kept<std::string>(kUserIDDefault) && kept<std::string>(kPhoneDefault) &&
         kept<system_clock::time_point>(kBirthdayDefault);
}

void keepProfile(const Profile& profile) {
  defaults().setValue(kUserIDDefault, QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString());
  defaults().setValue(kUserSexDefault, profile.isWoman);
  defaults().setValue(kBirthdayDefault, profile.birthday);
  defaults().setValue(kPhoneDefault, profile.phone.toStdString());
  defaults().setValue(kUserNameDefault, profile.name.toStdString());
  defaults().removeValue(kRegisteredWith);
  defaults().synchronize();
}

void registerKeptProfile(std::function<void(std::optional<Error>)> done) {
  const auto service = kept<std::string>(kServiceHostDefault);
  if (!isProfileKept() || !service || service == kept<std::string>(kRegisteredWith)) return;
  UserProfile::registerUser(kept<std::string>(kUserIDDefault), kept<std::string>(kUserNameDefault),
                            kept<bool>(kUserSexDefault).value_or(false),
                            kept<system_clock::time_point>(kBirthdayDefault), kept<std::string>(kPhoneDefault),
                            [service = *service, done = std::move(done)](const std::optional<Error>& error) {
                              if (!error) {
                                defaults().setValue(kRegisteredWith, service);
                                defaults().synchronize();
                              }
                              done(error);
                            });
}

}  // namespace orn
