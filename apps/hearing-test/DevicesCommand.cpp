#include "hearing-test/DevicesCommand.h"

#include <cstdio>
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/audio/AudioRoute.h>
#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>
#include <ORNHearingTestSDK/platform/AudioSession.h>

#include "hearing-test/CommonOptions.h"
#include "hearing-test/HostMachine.h"

namespace orn {
namespace {

using Json = nlohmann::ordered_json;

Json textOrNull(const std::optional<std::string>& text) { return text ? Json(*text) : Json(); }

Json devices(const AudioSession& session) {
  Json outputs = Json::array();
  for (const AudioPort& port : session.currentRoute().outputs) {
    outputs.push_back({{"name", port.portName}, {"uid", port.UID}});
  }
  return {{"route", textOrNull(session.routeText())},
          {"outputs", outputs},
          {"audiometer", textOrNull(AudioRoute::getKV50Mac())},
          {"earphones", AudioRoute::hasHeadset()},
          {"volume", ORNSystemVolumeManager::getSystemVolume()}};
}

void printDevices(const Json& found) {
  if (found["outputs"].empty()) {
    std::printf("No output: no sound server runs here, or nothing is connected to it.\n");
    return;
  }
  for (const Json& output : found["outputs"]) {
    std::printf("Output      %s (%s)\n", output["name"].get<std::string>().c_str(),
                output["uid"].get<std::string>().c_str());
  }
  std::printf("Route       %s\n", found["route"].get<std::string>().c_str());
  std::printf("Audiometer  %s\n",
              found["audiometer"].is_null() ? "none" : found["audiometer"].get<std::string>().c_str());
  std::printf("Earphones   %s\n", found["earphones"].get<bool>() ? "yes" : "no");
  std::printf("Volume      %.0f %%\n", found["volume"].get<double>() * 100);
}

}  // namespace

DevicesCommand::DevicesCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "devices", "Shows where the sound of this machine goes: the route, the audiometer, the volume");
  addJson(*command, json_);
}

int DevicesCommand::run() {
  const Platform machine = hostMachine();
  Platform::setCurrent(machine);
  const Json found = devices(*machine.audioSession);
  if (json_) {
    std::printf("%s\n", found.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
  } else {
    printDevices(found);
  }
  Platform::clearCurrent();
  return 0;
}

}  // namespace orn
