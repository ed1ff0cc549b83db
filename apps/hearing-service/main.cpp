#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <CLI/CLI.hpp>

#include "hearing-service/HearingService.h"

namespace {

using orn::service::misbehaviourNamed;

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

void tellPort(unsigned port, bool bare) {
  const int written = bare ? std::printf("%u\n", port) : std::printf("Listening on http://127.0.0.1:%u\n", port);
  if (written < 0 || std::fflush(stdout) != 0) throw std::runtime_error("can't write the port to standard output");
}

std::string checkMisbehaviour(const std::string& name) {
  return misbehaviourNamed(name) ? "" : "'" + name + "' is no misbehaviour";
}

void serveUntilSignalled(orn::service::ServiceOptions options, bool printsBarePort) {
  // Before the service starts its threads, so that all of them leave the signals to this one.
  const sigset_t signals = endingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);

  const orn::service::HearingService service(std::move(options));
  tellPort(service.port(), printsBarePort);
  int signal = 0;
  sigwait(&signals, &signal);
}

int run(int argc, char** argv) {
  CLI::App app("The reference cloud service, on 127.0.0.1, with sample calibration for any hardware.",
               "hearing-service");
  orn::service::ServiceOptions options;
  bool printsPort = false;
  std::string misbehaviour;
  app.add_option("--port", options.port, "The port; 0 takes a free one")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  app.add_option("--db", options.database, "SQLite file of profiles and tests")->capture_default_str();
  app.add_flag("--print-port", printsPort, "Prints the bare port as one line once the service is ready");
  app.add_option("--misbehave", misbehaviour,
                 "What is wrong with every reply: delay=MS, status500, nobody, garbage, half, huge or refuse")
      ->option_text("HOW")
      ->check(checkMisbehaviour);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  if (!misbehaviour.empty()) options.misbehaviour = *misbehaviourNamed(misbehaviour);
  serveUntilSignalled(std::move(options), printsPort);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "hearing-service: %s\n", error.what());
    return 1;
  }
}
