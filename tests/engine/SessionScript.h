#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

#include "RememberingPlayer.h"

namespace orn {

using Lines = std::vector<std::string>;

inline constexpr bool kLeft = true, kRight = false;

/// A machine in virtual time, a session on it with the same calibration at every frequency, a delegate that keeps a
/// trace, and a user who presses half a second into the tones that are heard.
class SessionScript {
 public:
  enum Type { Auto = 0, Manual = 1, Standard = 2 };
  enum Path { Earphones, Audiometer };

  explicit SessionScript(Type type, Path path = Earphones);
  ~SessionScript();
  SessionScript(const SessionScript&) = delete;
  SessionScript& operator=(const SessionScript&) = delete;

  /// A record with the same value at every frequency.
  static std::shared_ptr<ORNDeviceVolumeIOS> record(const std::string& value);

  /// One letter for each tone to come: H is heard, everything after the last letter is not.
  void presses(const std::string& letters);
  /// Every tone at this level or above is heard.
  void hearsFrom(int level);

  void run(double seconds);
  /// Runs, and gives what the delegate was told meanwhile.
  Lines trace(double seconds) { return run(seconds), takeTrace(); }
  Lines traceOfEar(bool isLeft, double seconds) { return session->startTest(isLeft), trace(seconds); }
  double now() const;
  /// At a time since the machine was made.
  void at(double seconds, std::function<void()> what);

  /// What the delegate was told since the last call, such as "4 R 1000hz 40db", "16 R -> 1000hz 40db", "16 R complete
  /// 1000hz=40", "90 complete L 1000hz=40 R 1000hz=40", "4 R missing calibration". The number is the time in seconds.
  Lines takeTrace();

  /// The loudest sample of a span of the output.
  int loudest(double from, double to) const;

  /// What has been sent to the service: the thresholds of 1000 Hz and the model, such as "L 40 R 35 model".
  Lines submissions() const;

  SimulatedPlatform machine;
  std::shared_ptr<ORNManualHearingTest> session;
  std::shared_ptr<ORNHearingTestDelegate> delegate = std::make_shared<ORNHearingTestDelegate>();
  std::shared_ptr<RememberingPlayer> quiet1000 = std::make_shared<RememberingPlayer>();
  std::shared_ptr<RememberingPlayer> loud1000 = std::make_shared<RememberingPlayer>();
  /// Called at each tone, after the user.
  std::function<void(const std::string& hz, const std::string& db, float volume)> onTone;

 private:
  void watch();
  void note(const std::string& what);
  void userMeets(const std::string& db);

  std::function<bool(int level)> hears_ = [](int) { return false; };
  Lines trace_;
};

std::string text(const EarResult& result);

}  // namespace orn
