// A manual test in a terminal: whoever sits at it plays tones and says which were heard.
//
//   left, right         begin with an ear
//   1000hz 40db         play a tone at a level in dB HL
//   heard               the tone that plays is the threshold of its frequency
//   quit                end
//
// It uses this machine's sound; with --simulate it needs none. The calibration here is an example: a real one belongs
// to one pair of earphones and comes from the service, by setEarPlugModel().

#include <cstdio>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

#include <ORNHearingTestSDK/audio/ORNSystemVolumeManager.h>
#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/linux/LinuxPlatform.h>
#include <ORNHearingTestSDK/platform/linux/LinuxRunLoop.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedPlatform.h>

namespace {

std::shared_ptr<const orn::ORNDeviceVolumeIOS> exampleCalibration() {
  const auto record = std::make_shared<orn::ORNDeviceVolumeIOS>();
  record->setS1000("-50");
  record->setS4000("-48.5");
  return record;
}

std::shared_ptr<orn::ORNHearingTestDelegate> narrator() {
  const auto delegate = std::make_shared<orn::ORNHearingTestDelegate>();
  delegate->willTestAtHz = [](auto&, const std::string& hz, const std::string& db, float volume, bool isLeft) {
    std::printf("%s ear: %s at %s plays, gain %.4f\n", isLeft ? "left" : "right", hz.c_str(), db.c_str(), volume);
  };
  delegate->willSelectedAtHz = [](auto&, const std::string& hz, const std::string& db, bool isLeft) {
    std::printf("%s ear: the threshold at %s is %s\n", isLeft ? "left" : "right", hz.c_str(), db.c_str());
  };
  delegate->oneEarCompleteWithResult = [](auto&, const orn::EarResult&, bool isLeft) {
    std::printf("%s ear: complete; go on with the other\n", isLeft ? "left" : "right");
  };
  delegate->completeWithLeftResult = [](auto&, const orn::EarResult&, const orn::EarResult&) {
    std::puts("the test is complete");
  };
  delegate->toneMissing = [](auto&, orn::ToneMissingReason reason, bool) {
    const bool isUncalibrated = reason == orn::ToneMissingReason::Calibration;
    std::puts(isUncalibrated ? "no tone: its calibration is missing" : "no tone: it can't be played");
  };
  return delegate;
}

/// On the main thread. False to end.
bool obey(orn::ORNHearingTest& session, const std::string& line) {
  std::istringstream words(line);
  std::string first, second;
  words >> first >> second;
  if (first == "quit") return false;
  if (first == "left" || first == "right") {
    session.startTest(first == "left");
  } else if (first == "heard") {
    session.listened();
  } else if (!second.empty()) {
    session.playAtHz(first, second);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const bool simulates = argc > 1 && std::string_view(argv[1]) == "--simulate";
  const auto loop = std::make_shared<orn::LinuxRunLoop>();
  orn::Platform::setCurrent(simulates ? orn::SimulatedPlatform(loop).platform()
                                      : orn::linuxPlatform(loop, "org.example.manual-test", "1.0"));

  auto session = orn::ORNManualHearingTest::init();
  session->setLeftVolume(exampleCalibration());
  session->setRightVolue(exampleCalibration());
  session->setTestHzs({"1000hz", "4000hz"});
  const auto delegate = narrator();
  session->setDelegate(delegate);

  // Levels are right at full volume only; the user's own volume is put back at the end.
  orn::ORNSystemVolumeManager::saveSystemVolume();
  orn::ORNSystemVolumeManager::setSystemVolumeToMax();

  std::thread reader([&] {
    bool goesOn = true;
    for (std::string line; goesOn && std::getline(std::cin, line);) {
      goesOn = line != "quit";
      loop->dispatchAsync([&, line] {
        if (!obey(*session, line)) loop->stop();
      });
    }
    if (goesOn) loop->dispatchAsync([&] { loop->stop(); });
  });
  loop->run();
  reader.join();

  session->endTest();
  session.reset();
  orn::ORNSystemVolumeManager::reStoreSystemVolume();
  orn::Platform::clearCurrent();
  return 0;
}
