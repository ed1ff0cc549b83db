#include <ORNHearingTestSDK/platform/simulated/SimulatedUserDefaults.h>

#include <utility>

namespace orn {

std::optional<DefaultsValue> SimulatedUserDefaults::value(const std::string& key) const {
  const std::lock_guard lock(mutex_);
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void SimulatedUserDefaults::setValue(const std::string& key, DefaultsValue value) {
  const std::lock_guard lock(mutex_);
  values_.insert_or_assign(key, std::move(value));
}

void SimulatedUserDefaults::removeValue(const std::string& key) {
  const std::lock_guard lock(mutex_);
  values_.erase(key);
}

}  // namespace orn
