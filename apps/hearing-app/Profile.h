#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include <QtCore/QString>

#include <ORNHearingTestSDK/platform/URLSession.h>

namespace orn {

/// Who takes the tests; age and sex decide the allowance in the score.
struct Profile {
  QString name;  ///< May be empty.
  bool isWoman = false;
  std::chrono::system_clock::time_point birthday;  ///< The start of the day.
  QString phone;
};

// The one profile of this machine, in the settings under the library's own keys. Main thread.

bool isProfileKept();

/// Keeps a new profile under a new user id, not yet registered.
void keepProfile(const Profile& profile);

/// Registers the kept profile with the service of the settings, unless that has it already. `done` is called once there
/// is an answer, and never if there is nothing to do. A profile that was not taken is sent again at the next call.
void registerKeptProfile(std::function<void(std::optional<Error>)> done);

}  // namespace orn
