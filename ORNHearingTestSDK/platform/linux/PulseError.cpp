#include <ORNHearingTestSDK/platform/linux/PulseError.h>

#include <string>

#include <ORNHearingTestSDK/platform/linux/LibPulse.h>

namespace orn {
namespace {

class PulseCategory final : public std::error_category {
  const char* name() const noexcept override { return "sound server"; }
  std::string message(int number) const override {
    const char* text = libpulse().pa_strerror(number);
    return text ? text : "unknown error";
  }
};

}  // namespace

std::error_code pulseError(int number) {
  static const PulseCategory category;
  return {number, category};
}

}  // namespace orn
