#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/platform/Platform.h>

#include "hearing-test/FullVolume.h"
#include "hearing-test/TerminalAudiogram.h"
#include "simulation/runs/TestRun.h"

namespace orn {

struct AudioSessionObserver;
class TerminalInput;
class Timer;

namespace simulation {
class OutputMonitor;
}

/// A test to be taken on this machine's own sound.
struct RealTestPlan {
  simulation::TestType type = simulation::TestType::Automatic;
  std::vector<std::string> frequencies;
  std::optional<simulation::ListenerTraits> listener;  ///< Takes the test in place of the person at the terminal.
  std::string calibrationReply;                        ///< JSON text; empty to ask the service.
  std::FILE* out = stdout;                             ///< Where progress is shown.
};

/// The device for a test, as it is connected at present.
struct ConnectedDevice {
  OutputPath path = OutputPath::Audiometer;
  std::string name;  ///< Address of the audiometer or model of the earphones.

  /// Throws std::runtime_error with one line if there is neither.
  static ConnectedDevice find();
};

/// One test on the platform in force, in real time, with the volume held at full from its construction until it is
/// over. A test whose process is suspended for some seconds fails, since a tone may have been judged that did not
/// sound. Main thread.
class RealTest {
 public:
  RealTest(RealTestPlan plan, TerminalInput& input);
  ~RealTest();
  RealTest(const RealTest&) = delete;
  RealTest& operator=(const RealTest&) = delete;

  /// Starts the test. `completed` is called if the test is completed, with the volume put back and the result not yet
  /// sent to the service; `ended` once, when nothing more is to come.
  void begin(const ConnectedDevice& device, std::function<void()> completed, std::function<void()> ended);
  const simulation::TestOutcome& outcome() const { return run_->outcome(); }

 private:
  simulation::TestWatch watch();
  void sayProgress(bool isLeft, double progress);
  void letListenerHear();
  void watchForHoldUps();
  void startEarWhenReady(bool isLeft);
  void keyCame();
  void interrupt();

  RealTestPlan plan_;
  TerminalInput& input_;
  TerminalAudiogram audiogram_;
  std::optional<FullVolume> volume_;
  std::function<void()> completed_, ended_;
  std::optional<bool> nextEar_;  // the ear that starts at the next key
  std::shared_ptr<AudioSessionObserver> observer_;
  std::shared_ptr<simulation::TestRun> run_;
  std::unique_ptr<simulation::OutputMonitor> monitor_;
  std::shared_ptr<Timer> pulse_;
  std::chrono::nanoseconds lastPulse_{};
};

}  // namespace orn
