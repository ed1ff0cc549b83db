#pragma once

#include <string>

namespace orn {

class ORNManualHearingTest;

/// In the settings, one device a line.
inline constexpr auto kCheckedDevicesDefault = "CHECKEDDEVICES";

// The devices whose sound the user has checked or does not want to check, in the settings. Main thread.

/// A name for the device that a session's tones go to: the audiometer's address, or the output that is there now.
std::string deviceOf(const ORNManualHearingTest& session);

bool isDeviceChecked(const std::string& device);
void keepCheckedDevice(const std::string& device);

}  // namespace orn
