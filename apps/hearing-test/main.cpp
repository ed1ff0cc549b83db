#include <cstdio>
#include <exception>
#include <CLI/CLI.hpp>

#include "hearing-test/SimulateCommand.h"

int main(int argc, char** argv) {
  CLI::App app("Measures hearing: runs whole tests, simulated ones in milliseconds.", "hearing-test");
  app.require_subcommand(1);
  orn::SimulateCommand simulate(app);
  try {
    app.parse(argc, argv);
    return simulate.run();
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "hearing-test: %s\n", error.what());
    return 1;
  }
}
