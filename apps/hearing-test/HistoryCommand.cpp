#include "hearing-test/HistoryCommand.h"

#include <cstdio>
#include <stdexcept>
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/results/HistoryScores.h>
#include <ORNHearingTestSDK/results/ORNListenTest.h>
#include <ORNHearingTestSDK/results/TestHistory.h>
#include <ORNHearingTestSDK/results/TestTime.h>

#include "hearing-test/CommonOptions.h"
#include "hearing-test/HostMachine.h"

namespace orn {
namespace {

using Json = nlohmann::ordered_json;

Json rowOf(const nlohmann::json& stored) {
  const auto test = ORNListenTest::modelObjectWithDictionary(stored);
  const HistoryScores scores = scoresOf(*test);
  const std::string date = testTimeText(test->createDate());
  Json row{{"date", date.empty() ? "unreadable date" : date},
           {"rightScore", scores.right},
           {"leftScore", scores.left},
           {"total", scores.total}};
  for (const bool isLeft : {true, false}) {
    Json& ear = row[isLeft ? "left" : "right"] = Json::object();
    for (const auto& [hz, db] : earResultOf(*test, isLeft)) ear[hz] = db;
  }
  return row;
}

void printRows(const Json& rows) {
  if (rows.empty()) std::printf("There are no stored tests.\n");
  for (const Json& row : rows) {
    std::printf("%s   right %3d   left %3d   total %3d\n", row["date"].get<std::string>().c_str(),
                row["rightScore"].get<int>(), row["leftScore"].get<int>(), row["total"].get<int>());
  }
}

}  // namespace

HistoryCommand::HistoryCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("history", "Shows your stored tests: date, scores of both ears, total");
  command->add_option("--host", host_, "The service, as [https://]host[:port]; the registered one if not given");
  addJson(*command, json_);
}

int HistoryCommand::run() {
  const Platform machine = hostMachine();
  Platform::setCurrent(machine);
  setServiceHost(machine, host_);
  if (!serviceIdentity()) throw std::runtime_error("nobody is registered: run 'hearing-test register' first");
  std::optional<Error> failure;
  Json rows = Json::array();
  const auto answered = [&](std::optional<Error> error, const nlohmann::json& tests) {
    failure = std::move(error);
    for (const auto& test : tests) rows.push_back(rowOf(test));
    stopLoopOf(machine);
  };
  TestHistory::getListenTestWithCompletion(answered, Refusals::AreErrors);
  runLoopOf(machine);
  Platform::clearCurrent();
  if (failure) throw std::runtime_error("the service did not send the tests: " + failure->message);
  if (json_) {
    std::printf("%s\n", Json{{"tests", rows}}.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
  } else {
    printRows(rows);
  }
  return 0;
}

}  // namespace orn
