#include <ORNHearingTestSDK/platform/Platform.h>

#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/platform/PerPlatform.h>

namespace orn {
namespace {

std::optional<Platform>& slot() {
  static std::optional<Platform> platform;
  return platform;
}

std::vector<PlatformBound*>& bound() {
  static std::vector<PlatformBound*> all;
  return all;
}

std::vector<void (*)()>& callsWhenInForce() {
  static std::vector<void (*)()> all;
  return all;
}

}  // namespace

PlatformBound::PlatformBound() { bound().push_back(this); }

// The single instances go at the end of the program, maybe before an object that clears the platform at its own end.
PlatformBound::~PlatformBound() { std::erase(bound(), this); }

const Platform& Platform::current() {
  if (!slot()) throw std::logic_error("no platform is in force: call orn::Platform::setCurrent first");
  return *slot();
}

bool Platform::isInForce() { return slot().has_value(); }

void Platform::setCurrent(Platform platform) {
  if (!platform.runLoop || !platform.audioOutput || !platform.audioSession || !platform.urlSession ||
      !platform.userDefaults || !platform.fileManager || !platform.device) {
    throw std::invalid_argument("a platform needs every one of its slots filled");
  }
  clearCurrent();
  slot() = std::move(platform);
  for (const auto call : callsWhenInForce()) call();
}

void Platform::clearCurrent() {
  for (PlatformBound* one : bound()) one->release();
  slot().reset();
}

void Platform::whenInForce(void (*call)()) {
  callsWhenInForce().push_back(call);
  if (slot()) call();
}

}  // namespace orn
