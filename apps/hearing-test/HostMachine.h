#pragma once

#include <string>

#include <ORNHearingTestSDK/platform/Platform.h>

namespace orn {

/// The platform of this machine, with a run loop in real time.
Platform hostMachine();

/// Keeps the service's host, as [https://]host[:port], in the settings; an empty text leaves them as they are.
void setServiceHost(const Platform& machine, const std::string& host);

/// Runs the loop of a platform that hostMachine() made, until stopLoopOf() is called.
void runLoopOf(const Platform& machine);
void stopLoopOf(const Platform& machine);

}  // namespace orn
