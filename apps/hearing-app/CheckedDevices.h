#pragma once

#include <string>

namespace orn {

class ORNManualHearingTest;

/// A setting: one device on each line.
inline constexpr auto kCheckedDevicesDefault = "CHECKEDDEVICES";

// The devices whose channels the user has checked, or does not want to check. Main thread.

/// A name for the device that a session's tones go to: the audiometer's address, or the present output.
std::string deviceOf(const ORNManualHearingTest& session);

bool isDeviceChecked(const std::string& device);
void keepCheckedDevice(const std::string& device);

}  // namespace orn
