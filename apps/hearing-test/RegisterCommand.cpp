#include "hearing-test/RegisterCommand.h"

#include <cstdio>
#include <optional>
#include <stdexcept>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/results/AppRegistration.h>
#include <ORNHearingTestSDK/results/UserProfile.h>

#include "hearing-test/HostMachine.h"

namespace orn {
namespace {

std::string checkBirthday(const std::string& text) {
  return UserProfile::birthdayOf(text) ? "" : "'" + text + "' is not a day from 1900-01-01 to today, as yyyy-MM-dd";
}

}  // namespace

RegisterCommand::RegisterCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("register", "Stores your profile with the service and on this machine");
  command->add_option("--host", host_, "The service, as [https://]host[:port]; kept for the other commands")
      ->required();
  command->add_option("--app-key", appKey_, "The application's key")->required();
  command->add_option("--id", id_, "Your id")->required();
  command->add_option("--birthday", birthday_, "Your birthday, yyyy-MM-dd")->required()->check(checkBirthday);
  command->add_option("--phone", phone_, "Your phone number")->required();
  command->add_option("--name", name_, "Your name");
  command->add_flag("--woman", isWoman_, "You are a woman; a man if not given");
}

int RegisterCommand::run() {
  const Platform machine = hostMachine();
  Platform::setCurrent(machine);
  setServiceHost(machine, host_);
  registerAppKey(appKey_);
  std::optional<Error> failure;
  const auto answered = [&](std::optional<Error> error) {
    failure = std::move(error);
    stopLoopOf(machine);
  };
  UserProfile::setAppUserID(id_, name_, isWoman_, UserProfile::birthdayOf(birthday_), phone_, answered,
                            Refusals::AreErrors);
  runLoopOf(machine);
  Platform::clearCurrent();
  if (failure) throw std::runtime_error("the service did not take the profile: " + failure->message);
  std::printf("Registered %s with %s\n", id_.c_str(), host_.c_str());
  return 0;
}

}  // namespace orn
