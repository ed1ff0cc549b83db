#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <ORNHearingTestSDK/platform/Export.h>

namespace orn {

class ORNDeviceCorrect;

/// A public interface that maps nothing; nothing in the library calls it. Any thread.
class ORN_EXPORT ORNDeviceCorrectAction {
 public:
  using Completion = std::function<void(std::shared_ptr<ORNDeviceCorrect>)>;  ///< Told the reply; always null.

  ORNDeviceCorrectAction() = delete;

  /// 0, whatever it is given.
  static double getVolume(bool isLeft, std::int32_t db, const std::string& hz, const std::string& earplug_model);

  /// Null, whatever it is given.
  static std::shared_ptr<ORNDeviceCorrect> getDeviceCorrectWithName(const std::string& name, const std::string& erji,
                                                                    const std::string& hz, bool isLeft);

  /// Looks up the user defaults "LEFT125HZ" to "LEFT8000HZ" and, despite its name, keeps nothing of them.
  static void saveCorrect(std::int32_t correct);

  /// Calls back with null on the main thread if the user default "LOCAL" is true; never, if not.
  static void getDeviceCorrectsWithErji(std::int32_t erji, Completion completion);
};

}  // namespace orn
