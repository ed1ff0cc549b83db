#include "hearing-app/CalibrationFiles.h"

#include <algorithm>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>
#include <ORNHearingTestSDK/screens/ORNHearingTestViewController.h>

#include "hearing-app/ServiceNotices.h"
#include "simulation/SessionCalibration.h"

namespace orn {
namespace {

/// The model that the device selection tests with.
constexpr auto kModel = "1";

// Both as the library names them.
bool isOfAudiometer(const std::string& name) { return name.starts_with("__"); }
bool isOfEarphones(const std::string& name) {
  std::string own = ORNHearingTest::platform() + "_" + kModel;
  std::replace(own.begin(), own.end(), '/', '_');
  return name == own;
}

/// Where there is no service, the result of a test could never be kept.
bool isUsable(const std::vector<std::uint8_t>& reply) {
  return !noticeOfMissingHost() &&
         simulation::isCalibration(simulation::OutputPath::Audiometer, std::string(reply.begin(), reply.end()),
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
