#include <csignal>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/common/Version.h>

#include "hearing-service/HearingService.h"
#include "hearing-service/ListenAddress.h"

namespace {

using orn::service::ListenAddress;
using orn::service::misbehaviourNamed;

const auto* const kVersion = reinterpret_cast<const char*>(ORNHearingTestSDKVersionString);

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

/// Whether a signal came before anybody waits for it.
bool isEndingSignalled() {
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, SIGINT) == 1 || sigismember(&pending, SIGTERM) == 1;
}

void tellPort(const std::string& origin, unsigned port, bool bare) {
  const int written = bare ? std::printf("%u\n", port) : std::printf("Listening on %s:%u\n", origin.c_str(), port);
  if (written < 0 || std::fflush(stdout) != 0) throw std::runtime_error("can't write the port to standard output");
}

std::string checkMisbehaviour(const std::string& name) {
  return misbehaviourNamed(name) ? "" : "'" + name + "' is not a misbehaviour";
}

std::string checkAddress(const std::string& text) {
  return ListenAddress::parse(text, 0) ? "" : "'" + text + "' is not a numeric address";
}

std::string checkDatabase(const std::string& file) { return file.empty() ? "the database's file has no name" : ""; }

std::string contents(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream || text.empty()) throw std::runtime_error("can't read " + file);
  return text;
}

void serveUntilSignalled(orn::service::ServiceOptions options, bool printsBarePort) {
  // Before the service starts its threads, so that all of them leave the signals to this one.
  const sigset_t signals = endingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);

  const std::string scheme = options.listening.isSecure() ? "https://" : "http://";
  const std::string origin = scheme + ListenAddress::parse(options.listening.address, 0)->text;
  options.isEnding = isEndingSignalled;
  std::optional<orn::service::HearingService> service;
  try {
    service.emplace(std::move(options));
  } catch (const orn::service::DatabaseError&) {
    if (isEndingSignalled()) return;
    throw;
  }
  tellPort(origin, service->port(), printsBarePort);
  int signal = 0;
  sigwait(&signals, &signal);
}

int run(int argc, char** argv) {
  CLI::App app("The reference cloud service, with sample calibration for any hardware.", "hearing-service");
  app.set_version_flag("--version", std::string("hearing-service of ") + kVersion);
  orn::service::ServiceOptions options;
  bool printsPort = false, allowsPlain = false, logsPersons = false;
  std::string misbehaviour, certificate, key;
  orn::service::Listening& listening = options.listening;
  app.add_option("--port", listening.port, "The port; 0 takes a free one")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  app.add_option("--address", listening.address, "The address to listen on, numeric; beyond this machine only with TLS")
      ->check(checkAddress)
      ->capture_default_str();
  auto* const keyOption = app.add_option("--key", key, "PEM file of the certificate's key");
  app.add_option("--certificate", certificate, "PEM file of a certificate, with its chain: the service then speaks TLS")
      ->needs(keyOption);
  keyOption->needs("--certificate");
  app.add_flag("--allow-plain", allowsPlain, "Allows an address beyond this machine without TLS");
  app.add_option("--db", options.database, "SQLite file of profiles and tests, made readable by its owner alone")
      ->check(checkDatabase)
      ->capture_default_str();
  app.add_flag("--log-personal", logsPersons, "Logs whole paths and bodies too: ids, names, phone numbers, thresholds");
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
  const bool isPlain = certificate.empty();
  if (isPlain && !allowsPlain && !ListenAddress::parse(listening.address, 0)->isLoopback()) {
    std::fputs("hearing-service: an address beyond this machine needs --certificate and --key, or --allow-plain\n",
               stderr);
    return 2;
  }
  if (!isPlain) listening.certificate = contents(certificate);
  if (!isPlain) listening.key = contents(key);
  options.log = orn::service::standardErrorLog();
  if (logsPersons) options.detail = orn::service::LogDetail::Persons;
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
