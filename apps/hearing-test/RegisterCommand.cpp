#include "hearing-test/RegisterCommand.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/engine/ORNHearingTest.h>

#include "hearing-test/HostMachine.h"

namespace orn {
namespace {

using std::chrono::system_clock;

/// Local midnight of a date written as yyyy-MM-dd.
std::optional<system_clock::time_point> dateOf(const std::string& text) {
  std::tm calendar{};
  const char* end = strptime(text.c_str(), "%Y-%m-%d", &calendar);
  if (!end || *end != '\0') return std::nullopt;
  const std::tm asked = calendar;
  calendar.tm_isdst = -1;
  const std::time_t seconds = std::mktime(&calendar);
  if (calendar.tm_mday != asked.tm_mday || calendar.tm_mon != asked.tm_mon) return std::nullopt;  // no such day
  return system_clock::from_time_t(seconds);
}

std::string checkDate(const std::string& text) {
  return dateOf(text) ? std::string() : "'" + text + "' is no date of the form yyyy-MM-dd";
}

}  // namespace

RegisterCommand::RegisterCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("register", "Stores your profile with the service and on this machine");
  command->add_option("--host", host_, "The service, as host or host:port; kept for the other commands")->required();
  command->add_option("--app-key", appKey_, "The application's key")->required();
  command->add_option("--id", id_, "Your id")->required();
  command->add_option("--birthday", birthday_, "Your birthday, yyyy-MM-dd")->required()->check(checkDate);
  command->add_option("--phone", phone_, "Your phone number")->required();
  command->add_option("--name", name_, "Your name");
  command->add_flag("--woman", isWoman_, "You are a woman; a man if not given");
}

int RegisterCommand::run() {
  const Platform machine = hostMachine();
  Platform::setCurrent(machine);
  setServiceHost(machine, host_);
  ORNHearingTest::registerAppKey(appKey_);
  std::optional<Error> failure;
  ORNHearingTest::setAppUserID(id_, name_, isWoman_, dateOf(birthday_), phone_, [&](std::optional<Error> error) {
    failure = std::move(error);
    stopLoopOf(machine);
  });
  runLoopOf(machine);
  Platform::clearCurrent();
  if (failure) throw std::runtime_error("the service did not take the profile: " + failure->message);
  std::printf("Registered %s with %s\n", id_.c_str(), host_.c_str());
  return 0;
}

}  // namespace orn
