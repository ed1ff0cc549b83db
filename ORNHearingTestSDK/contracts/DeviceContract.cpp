#include <ORNHearingTestSDK/contracts/DeviceContract.h>

#include <algorithm>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/contracts/Checking.h>

namespace orn::contract {
namespace {

struct DeviceCheck {
  explicit DeviceCheck(std::shared_ptr<Device> device) : backend(std::move(device)) {}

  std::vector<std::string> texts() const {
    return {backend->machine(), backend->systemVersion(), backend->applicationIdentifier(),
            backend->applicationVersion()};
  }

  std::shared_ptr<Device> backend;
};

const Contract<DeviceCheck> kDeviceContracts[] = {
    {"every text is one line",
     [](DeviceCheck& check) {
       for (const std::string& text : check.texts()) {
         const bool isLine =
             std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 127; });
         expect(isLine, "\"" + text + "\" is not");
       }
     }},

    {"the texts stay the same, on any thread",
     [](DeviceCheck& check) {
       const auto before = check.texts();
       std::vector<std::string> elsewhere;
       newThread([&] { elsewhere = check.texts(); }).join();
       expect(check.texts() == before && elsewhere == before, "another text comes at another time");
     }},
};

}  // namespace

Report checkDevice(const std::function<std::shared_ptr<Device>()>& make) {
  return checkAll<DeviceCheck>("Device", kDeviceContracts, make);
}

}  // namespace orn::contract
