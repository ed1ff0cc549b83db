#pragma once

#include <functional>
#include <memory>

#include <ORNHearingTestSDK/contracts/Contract.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn::contract {

/// A new store without values. The hooks may be empty, and the contracts that need them are not checked then.
struct UserDefaultsUnderTest {
  std::shared_ptr<UserDefaults> defaults;  ///< Settings that may be written to.

  /// Opens the same store once more, as the next start of the program does.
  std::function<std::shared_ptr<UserDefaults>()> reopen;

  /// Makes a call while the disk takes nothing more, or only a few hundred bytes.
  std::function<void(const std::function<void()>& call)> withFullDisk;
};

Report checkUserDefaults(const std::function<UserDefaultsUnderTest()>& make);

}  // namespace orn::contract
