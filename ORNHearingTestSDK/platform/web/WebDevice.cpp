#include <ORNHearingTestSDK/platform/web/WebDevice.h>

#include <emscripten/val.h>

#include <utility>

namespace orn {
namespace {

std::string textOf(const char* object, const char* field) {
  const auto value = emscripten::val::global(object)[field];
  std::string text = value.isString() ? value.as<std::string>() : "";
  for (char& c : text) c = static_cast<unsigned char>(c) < ' ' || c == 127 ? ' ' : c;
  return text;
}

}  // namespace

WebDevice::WebDevice(std::string applicationVersion)
    : machine_(textOf("navigator", "platform")),
      systemVersion_(textOf("navigator", "userAgent")),
      applicationIdentifier_(textOf("location", "host")),
      applicationVersion_(std::move(applicationVersion)) {}

}  // namespace orn
