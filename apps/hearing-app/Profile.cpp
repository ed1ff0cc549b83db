#include "hearing-app/Profile.h"

#include <chrono>
#include <string>
#include <utility>

#include <QtCore/QDateTime>
#include <QtCore/QUuid>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn {
namespace {

using std::chrono::system_clock;

/// Set once the service has answered; the library's keys are there before.
constexpr auto kIsRegistered = "PROFILEREGISTERED";

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
  defaults().removeValue(kIsRegistered);
  defaults().synchronize();
}

void registerKeptProfile(std::function<void(std::optional<Error>)> done) {
  if (!isProfileKept() || kept<bool>(kIsRegistered).value_or(false)) return;
  ORNHearingTest::setAppUserID(kept<std::string>("USERID"), kept<std::string>("USERNAME"),
                               kept<bool>("USERSEX").value_or(false), kept<system_clock::time_point>("BIRTHDAY"),
                               kept<std::string>("PHONE"), [done = std::move(done)](const std::optional<Error>& error) {
                                 if (!error) {
                                   defaults().setValue(kIsRegistered, true);
                                   defaults().synchronize();
                                 }
                                 done(error);
                               });
}

}  // namespace orn
