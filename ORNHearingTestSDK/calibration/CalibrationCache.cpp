#include <ORNHearingTestSDK/calibration/CalibrationCache.h>

#include <algorithm>
#include <string_view>

#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>

namespace orn {
namespace {

/// A name for one file of the documents folder, whatever the text holds.
std::string fileName(std::string name, std::string_view replaced) {
  std::replace_if(
      name.begin(), name.end(), [&](char c) { return c == '/' || c == '\0' || replaced.find(c) != replaced.npos; },
      '_');
  return name;
}

}  // namespace

std::string audiometerCacheName(const std::string& prefix, const std::string& address) {
  return fileName(prefix + "__" + address, ":");
}

std::string earphoneCacheName(const std::string& model) {
  return fileName(ORNDeviceCorrect::platform() + "_" + model, "");
}

}  // namespace orn
