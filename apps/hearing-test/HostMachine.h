#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

/// This machine as the program uses it: the network, the user's settings and files, and the device. The sound is
/// simulated. The run loop is in real time.
Platform hostMachine();

/// Keeps the service's host, as host or host:port, in the settings; an empty text leaves them as they are.
void setServiceHost(const Platform& machine, const std::string& host);

/// Runs the loop of a platform that hostMachine() made until stop() is called on it.
void runLoopOf(const Platform& machine);
void stopLoopOf(const Platform& machine);

}  // namespace orn
