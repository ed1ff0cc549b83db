#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/calibration/CalibrationCheck.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>

#include "simulation/listener/VirtualListener.h"
#include "simulation/runs/TestOutcome.h"

namespace orn::simulation {

enum class TestType : std::int32_t { Automatic = 0, Standard = 2 };

class TestRun;

/// Told of a test's progress; empty members are not called.
struct TestWatch {
  std::function<void(bool isLeft)> earStarts;
  std::function<void(const std::string& hz, const std::string& db, bool isLeft)> tonePlays;
  std::function<void(bool isLeft, const std::string& hz, const std::string& db)> thresholdFound;

  /// The first ear is done; the next one waits for TestRun::startEar(nextIsLeft).
  std::function<void(TestRun& run, bool nextIsLeft)> earEnds;

  /// The test is complete or has failed; a complete one has not yet been submitted.
  std::function<void()> isOver;

  /// The submission of a complete test has ended, well or badly, or there was none since nobody is registered.
  std::function<void()> submissionEnded;
};

/// One test of both ears on the platform in force, from its calibration to its outcome: a session, its delegate and, if
/// one takes it, a listener. The right ear goes first. Main thread.
class TestRun {
 public:
  TestRun(TestType type, const std::vector<std::string>& frequencies, TestWatch watch);
  ~TestRun();
  TestRun(const TestRun&) = delete;
  TestRun& operator=(const TestRun&) = delete;

  /// Takes the calibration of a device, an address or a model, from the service's reply.
  void calibrate(OutputPath path, const std::string& device, const std::string& reply);

  /// Has the session fetch it from the service or its cache file. `answered` is called once, later; if the fetch
  /// failed, the outcome has failed by then.
  void fetchCalibration(OutputPath path, const std::string& device, std::function<void()> answered);

  /// Lets a virtual listener take the test: it presses for what it hears.
  void invite(const ListenerTraits& listener);

  /// The output's interleaved samples, without a gap: what the listener hears.
  void hear(std::span<const std::int16_t> samples);

  void startEar(bool isLeft);

  /// The person or the listener presses.
  void press();

  /// Ends the test without a result.
  void fail(const std::string& why);

  /// Waits no longer for the service to take the result of a complete test.
  void giveSubmissionUp(const std::string& why);

  /// Of the ear under test, 0 to 1.
  double progress() const;

  bool isOver() const { return outcome_.isComplete || !outcome_.failure.empty(); }
  const TestOutcome& outcome() const { return outcome_; }
  TestOutcome takeOutcome() { return std::move(outcome_); }

 private:
  void watchDelegate();
  void presented(const std::string& hz, const std::string& db, float volume, bool isLeft);
  void closePresentation();
  void complete(const EarResult& left, const EarResult& right);

  TestWatch watch_;
  OutputPath path_ = OutputPath::Audiometer;
  std::shared_ptr<ORNManualHearingTest> session_;
  std::shared_ptr<ORNHearingTestDelegate> delegate_;
  std::unique_ptr<VirtualListener> listener_;
  std::optional<std::chrono::nanoseconds> start_;
  TestOutcome outcome_;
};

}  // namespace orn::simulation
