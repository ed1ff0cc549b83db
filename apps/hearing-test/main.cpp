#include <cstdio>
#include <exception>
#include <CLI/CLI.hpp>

#include "hearing-test/ConformanceCommand.h"
#include "hearing-test/DevicesCommand.h"
#include "hearing-test/HistoryCommand.h"
#include "hearing-test/RegisterCommand.h"
#include "hearing-test/RunCommand.h"
#include "hearing-test/SimulateCommand.h"
#include "hearing-test/StudyCommand.h"

int main(int argc, char** argv) {
  CLI::App app("Measures hearing: runs whole tests, simulated ones in milliseconds.", "hearing-test");
  app.require_subcommand(1);
  orn::SimulateCommand simulate(app);
  orn::StudyCommand study(app);
  orn::ConformanceCommand conformance(app);
  orn::DevicesCommand devices(app);
  orn::RunCommand real(app);
  orn::RegisterCommand registration(app);
  orn::HistoryCommand history(app);
  try {
    app.parse(argc, argv);
    if (app.got_subcommand("register")) return registration.run();
    if (app.got_subcommand("history")) return history.run();
    if (app.got_subcommand("study")) return study.run();
    if (app.got_subcommand("conformance")) return conformance.run();
    if (app.got_subcommand("devices")) return devices.run();
    if (app.got_subcommand("run")) return real.run();
    return simulate.run();
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "hearing-test: %s\n", error.what());
    return 1;
  }
}
