#include "hearing-service/SampleReplies.h"

#include <nlohmann/json.hpp>

#include "simulation/calibration/SampleCalibration.h"

namespace orn::service {

nlohmann::json audiometerReply(const std::string& machine, const std::string& address) {
  auto reply = nlohmann::json::parse(simulation::sampleAudiometerReply());
  for (auto& record : reply.at("deviceVolumeIOS")) {
    record["correct_name"] = machine;
    record["mac"] = address;
    if (!record.at("base").get<bool>() && address == kAddressOfSeries1) record["batch"] = 1;
  }
  return reply;
}

nlohmann::json earphonesReply(const std::string& machine, const std::string& model) {
  auto reply = nlohmann::json::parse(simulation::sampleEarphonesReply());
  for (auto& record : reply.at("deviceVolumeIOS")) {
    record["correct_name"] = machine;
    record["earplug_model"] = model;
  }
  return reply;
}

}  // namespace orn::service
