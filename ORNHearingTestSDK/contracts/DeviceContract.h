#pragma once

#include <functional>
#include <memory>

#include <ORNHearingTestSDK/contracts/Contract.h>
#include <ORNHearingTestSDK/platform/Device.h>

namespace orn::contract {

Report checkDevice(const std::function<std::shared_ptr<Device>()>& make);

}  // namespace orn::contract
