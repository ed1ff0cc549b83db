// A whole automatic test in virtual time: a session on the simulated platform, and a host that "hears" from 35 dB up.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <ORNHearingTestSDK/ORNHearingTestSDK.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

int main() {
  const orn::SimulatedPlatform machine;
  orn::Platform::setCurrent(machine.platform());

  const auto calibration = std::make_shared<orn::ORNDeviceVolumeIOS>();
  calibration->setS1000("-50");
  calibration->setS4000("-48.5");

  const auto session = orn::ORNManualHearingTest::initWithTestType(0);
  session->setLeftVolume(calibration);
  session->setRightVolue(calibration);
  session->setTestHzs({"1000hz", "4000hz"});

  bool isOver = false;
  const auto delegate = std::make_shared<orn::ORNHearingTestDelegate>();
  delegate->willTestAtHz = [](orn::ORNHearingTest& test, const std::string& hz, const std::string& db, float volume,
                              bool isLeft) {
    std::printf("%s ear, %s at %s, volume %.4f\n", isLeft ? "left" : "right", hz.c_str(), db.c_str(), volume);
    if (std::atoi(db.c_str()) >= 35) test.listened();
  };
  delegate->oneEarCompleteWithResult = [](orn::ORNHearingTest& test, const orn::EarResult&, bool isLeft) {
    test.startTest(!isLeft);
  };
  delegate->completeWithLeftResult = [&](orn::ORNHearingTest&, const orn::EarResult& left, const orn::EarResult&) {
    for (const auto& [hz, db] : left) std::printf("threshold of the left ear at %s: %s dB\n", hz.c_str(), db.c_str());
    isOver = true;
  };
  session->setDelegate(delegate);

  session->startTest(false);
  const bool ended = machine.virtualTime->runUntil([&] { return isOver; }, std::chrono::hours(1));
  orn::Platform::clearCurrent();
  return ended ? 0 : 1;
}
