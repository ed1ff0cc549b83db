#pragma once

#include <map>
#include <mutex>

#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn {

/// Settings in memory. Any thread.
class ORN_EXPORT SimulatedUserDefaults final : public UserDefaults {
 public:
  std::optional<DefaultsValue> value(const std::string& key) const override;
  void setValue(const std::string& key, DefaultsValue value) override;
  void removeValue(const std::string& key) override;
  bool synchronize() override { return true; }

 private:
  mutable std::mutex mutex_;
  std::map<std::string, DefaultsValue> values_;
};

}  // namespace orn
