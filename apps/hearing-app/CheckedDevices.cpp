#include "hearing-app/CheckedDevices.h"

#include <algorithm>

#include <ORNHearingTestSDK/common/DefaultsReading.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>
#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/UserDefaults.h>

namespace orn {
namespace {

std::string lines() { return textValue(Platform::current().userDefaults->value(kCheckedDevicesDefault)).value_or(""); }

}  // namespace

std::string deviceOf(const ORNManualHearingTest& session) {
  if (const auto& address = session.KV50MAC()) return *address;
  const auto outputs = Platform::current().audioSession->currentRoute().outputs;
  std::string name = outputs.empty() ? "" : outputs.back().portName + " " + outputs.back().UID;
  std::replace(name.begin(), name.end(), '\n', ' ');
  return name;
}

bool isDeviceChecked(const std::string& device) {
  return ("\n" + lines()).find("\n" + device + "\n") != std::string::npos;
}

void keepCheckedDevice(const std::string& device) {
  if (isDeviceChecked(device)) return;
  UserDefaults& defaults = *Platform::current().userDefaults;
  defaults.setValue(kCheckedDevicesDefault, lines() + device + "\n");
  defaults.synchronize();
}

}  // namespace orn
