#pragma once

#include <map>
#include <string>

#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn {

/// Settings in the page's local storage, all of them under one key, so that they are written whole or not at all.
class WebUserDefaults final : public UserDefaults {
 public:
  explicit WebUserDefaults(std::string storageKey);

  std::optional<DefaultsValue> value(const std::string& key) const override;
  void setValue(const std::string& key, DefaultsValue value) override;
  void removeValue(const std::string& key) override;
  bool synchronize() override;

 private:
  std::string storageKey_;
  std::map<std::string, DefaultsValue> values_;
};

}  // namespace orn
