#include "hearing-test/CalibrationReply.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

#include <ORNHearingTestSDK/calibration/ORNDeviceCorrect.h>

#include "simulation/calibration/SampleCalibration.h"

namespace orn {
namespace {

std::string contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file) throw std::runtime_error("can't read " + path);
  return text;
}

}  // namespace

std::string calibrationReply(OutputPath path, const std::string& file) {
  if (file.empty()) return simulation::sampleReply(path);
  std::string reply = contents(file);
  const auto parsed = ORNDeviceCorrect::parse(reply);
  if (!parsed->deviceVolumeIOS()) throw std::runtime_error(file + " is not a calibration reply with records");
  if (parsed->rspCode() != 0) throw std::runtime_error(file + " is a refusal by the service");
  return reply;
}

}  // namespace orn
