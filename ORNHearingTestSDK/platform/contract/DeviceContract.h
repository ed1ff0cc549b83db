#pragma once

#include <functional>
#include <memory>

#include <ORNHearingTestSDK/platform/Device.h>
#include <ORNHearingTestSDK/platform/contract/Contract.h>

namespace orn::contract {

Report checkDevice(const std::function<std::shared_ptr<Device>()>& make);

}  // namespace orn::contract
