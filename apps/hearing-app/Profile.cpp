#include "hearing-app/Profile.h"

#include <chrono>
#include <string>
#include <utility>

#include <QtCore/QDateTime>
#include <QtCore/QUuid>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>
#include <ORNHearingTestSDK/results/ServiceRequest.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

namespace orn {
namespace {

using std::chrono::system_clock;

/// The service that has taken the profile; the library's keys are there before.
constexpr auto kRegisteredWith = "PROFILEREGISTERED";

UserDefaults& defaults() { return *Platform::current().userDefaults; }

template <class Value>
std::optional<Value> kept(const char* key) {
  const auto value = defaults().value(key);
  const auto* found = value ? std::get_if<Value>(&*value) : nullptr;
  return found ? std::optional(*found) : std::nullopt;
}

system_clock::time_point startOf(QDate day) {
  return system_clock::time_point(std::chrono::milliseconds(day.startOfDay().toMSecsSinceEpoch()));
}

}  // namespace

bool isProfileKept() {
  return kept<std::string>("USERID") && kept<std::string>("PHONE") && kept<system_clock::time_point>("BIRTHDAY");
}

void keepProfile(const Profile& profile) {
  defaults().setValue("USERID", QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString());
  defaults().setValue("USERSEX", profile.isWoman);
  defaults().setValue("BIRTHDAY", startOf(profile.birthday));
  defaults().setValue("PHONE", profile.phone.toStdString());
  defaults().setValue("USERNAME", profile.name.toStdString());
  defaults().removeValue(kRegisteredWith);
  defaults().synchronize();
}

void registerKeptProfile(std::function<void(std::optional<Error>)> done) {
  const auto service = kept<std::string>(kServiceHostDefault);
  if (!isProfileKept() || !service || service == kept<std::string>(kRegisteredWith)) return;
  UserProfile::setAppUserID(
      kept<std::string>("USERID"), kept<std::string>("USERNAME"), kept<bool>("USERSEX").value_or(false),
      kept<system_clock::time_point>("BIRTHDAY"), kept<std::string>("PHONE"),
      [service = *service, done = std::move(done)](const std::optional<Error>& error) {
        if (!error) {
          defaults().setValue(kRegisteredWith, service);
          defaults().synchronize();
        }
        done(error);
      },
      Refusals::AreErrors);
}

}  // namespace orn
