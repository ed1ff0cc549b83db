#include "hearing-test/RunCommand.h"

#include <cstdio>
#include <stdexcept>
#include <CLI/CLI.hpp>

#include <ORNHearingTestSDK/common/ToneFrequencies.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>

#include "EndingSignals.h"
#include "hearing-test/CalibrationReply.h"
#include "hearing-test/CommonOptions.h"
#include "hearing-test/HostMachine.h"
#include "hearing-test/RealTest.h"
#include "hearing-test/SimulateReport.h"
#include "hearing-test/TerminalInput.h"

namespace orn {
RunCommand::RunCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("run", "A real test of both ears on this machine's sound; any key says that a tone was heard");
  addType(*command, type_);
  addFrequencies(*command, frequencies_);
  command->add_flag("--listener", hasListener_, "A virtual listener takes the test: it hears what the output plays");
  listener_.addTo(*command);
  auto* calibration = addCalibration(*command, calibration_);
  command
      ->add_option("--host", host_,
                   "Gets the calibration from this service and sends it the result; the registered "
                   "one if not given")
      ->excludes(calibration);
  files_.addTo(*command);
  addJson(*command, json_);
}

int RunCommand::run() {
  holdEndingSignals();
  const Platform machine = hostMachine();
  Platform::setCurrent(machine);
  setServiceHost(machine, host_);
  RealTestPlan plan;
  plan.type = typesNamed(type_).front();
  const bool isStandard = plan.type == simulation::TestType::Standard;  // which has frequencies of its own
  plan.frequencies = isStandard ? frequencyKeys(kTestOrder) : frequencyKeys(frequencies_);
  if (hasListener_) plan.listener = listener_.traits();
  plan.out = json_ ? stderr : stdout;

  simulation::TestOutcome outcome;
  ConnectedDevice device;
  {
    TerminalInput input(machine.runLoop);
    device = ConnectedDevice::find();
    if (!calibration_.empty()) plan.calibrationReply = calibrationReply(device.path, calibration_);
    RealTest test(plan, input);
    test.begin(
        device, [&] { print(test.outcome()); }, [&machine] { stopLoopOf(machine); });
    runLoopOf(machine);
    outcome = test.outcome();
  }
  Platform::clearCurrent();
  if (!outcome.isComplete) throw std::runtime_error(outcome.failure + hint(outcome));
  files_.write(outcome, device.name);
  if (!outcome.submissionFailure.empty()) throw std::runtime_error(outcome.submissionFailure);
  return 0;
}

/// What the user can do about it.
std::string RunCommand::hint(const simulation::TestOutcome& outcome) const {
  if (!outcome.failure.starts_with("no calibration")) return "";
  return "; give the service that has it by --host HOST[:PORT], or its reply in a file by --calibration REPLY.json";
}

/// Before the result is sent, which may take its time.
void RunCommand::print(const simulation::TestOutcome& outcome) const {
  if (json_) {
    std::printf("%s\n", jsonReport(outcome).c_str());
  } else {
    printResult(outcome);
  }
  std::fflush(stdout);
}

}  // namespace orn
