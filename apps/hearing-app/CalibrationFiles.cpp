#include "hearing-app/CalibrationFiles.h"

#include <ORNHearingTestSDK/calibration/CalibrationCache.h>
#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>

#include "hearing-app/ServiceNotices.h"

namespace orn {
namespace {

bool isOfAudiometer(const std::string& name) { return name.starts_with(audiometerCacheName("", "")); }
bool isOfEarphones(const std::string& name) { return name == earphoneCacheName(kEarphoneModel); }

/// Where there is no service, the result of a test could never be kept.
bool isUsable(const std::vector<std::uint8_t>& reply) {
  return isServiceHostSet() && isCalibration(OutputPath::Audiometer, std::string(reply.begin(), reply.end()),
                                             ORNHearingTestViewController::testedHzs());
}

}  // namespace

std::optional<std::vector<std::uint8_t>> CalibrationFiles::contents(const std::string& path) const {
  const std::string name = path.substr(path.rfind('/') + 1);
  if (isOfEarphones(name)) return std::nullopt;
  auto found = files_->contents(path);
  if (found && isOfAudiometer(name) && !isUsable(*found)) return std::nullopt;
  return found;
}

}  // namespace orn
