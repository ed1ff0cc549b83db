// A session of any type gets any keys and levels, in any order, on either path, with presses and pauses between: it
// must never report a level that is not on its scale, and the stream must never stop.

#include <fuzzer/FuzzedDataProvider.h>

#include <chrono>
#include <span>

#include <ORNHearingTestSDK/calibration/ORNDeviceVolumeIOS.h>
#include <ORNHearingTestSDK/common/NumericText.h>
#include <ORNHearingTestSDK/engine/ORNManualHearingTest.h>
#include <ORNHearingTestSDK/platform/SampleFormat.h>
#include <ORNHearingTestSDK/platform/simulated/SimulatedRunLoop.h>

#include "fuzz/Expect.h"
#include "fuzz/FuzzMachine.h"
#include "tests/engine/RememberingPlayer.h"

namespace {

using namespace orn;

/// Plays nothing, so that the time is spent in the session; the stream is pulled by the fuzzer.
class SilentOutput final : public AudioOutput {
 public:
  std::unique_ptr<AudioQueue> newOutputQueue(const AudioStreamBasicDescription&, AudioQueue::OutputCallback) override {
    return nullptr;
  }
  std::unique_ptr<AudioPlayer> playerWithContentsOfFile(const std::string&) override {
    return std::make_unique<RememberingPlayer>();
  }
  std::unique_ptr<AudioPlayer> playerWithData(std::span<const std::uint8_t>) override {
    return std::make_unique<RememberingPlayer>();
  }
};

std::string key(FuzzedDataProvider& data) {
  static const std::string known[] = {"125hz",  "250hz",  "500hz",     "1000hz",        "2000hz",
                                      "4000hz", "8000hz", "1000hz_re", "99999999999hz", ""};
  return data.ConsumeBool() ? data.PickValueInArray(known) : data.ConsumeRandomLengthString(12);
}

std::string level(FuzzedDataProvider& data) {
  return data.ConsumeBool() ? std::to_string(data.ConsumeIntegralInRange(-20, 110)) + "db"
                            : data.ConsumeRandomLengthString(12);
}

std::shared_ptr<ORNDeviceVolumeIOS> record(FuzzedDataProvider& data) {
  if (data.ConsumeBool()) return nullptr;
  auto made = std::make_shared<ORNDeviceVolumeIOS>();
  made->setS1000(std::to_string(data.ConsumeIntegralInRange(-90, 20)));
  made->setS500(data.ConsumeRandomLengthString(8));
  return made;
}

/// Compares what it is told with the scale.
std::shared_ptr<ORNHearingTestDelegate> watchingDelegate() {
  const auto isOnScale = [](const std::string& db) {
    const std::int32_t level = intValue(db);
    return level >= -5 && level <= 90 && level % 5 == 0;
  };
  auto delegate = std::make_shared<ORNHearingTestDelegate>();
  delegate->willTestAtHz = [isOnScale](auto&, auto&, const std::string& db, float volume, bool) {
    fuzz::expect(isOnScale(db), "a tone is on the scale");
    fuzz::expect(volume >= 0, "a volume is a number");
  };
  delegate->willSelectedAtHz = [isOnScale](auto&, auto&, const std::string& db, bool) {
    fuzz::expect(isOnScale(db), "a threshold is on the scale");
  };
  return delegate;
}

void step(ORNManualHearingTest& session, SimulatedRunLoop& loop, FuzzedDataProvider& data) {
  switch (data.ConsumeIntegralInRange(0, 9)) {
    case 0:
      return session.startTest(data.ConsumeBool());
    case 1:
      return session.listened();
    case 2:
      return session.pauseTest();
    case 3:
      return session.continueTest();
    case 4: {
      const std::string hz = key(data);
      return session.playAtHz(hz, level(data));
    }
    case 5: {
      std::vector<std::string> hzs;
      while (hzs.size() < 4 && data.ConsumeBool()) hzs.push_back(key(data));
      return session.setTestHzs(hzs);
    }
    case 6:
      return session.setKV50MAC(data.ConsumeBool() ? std::optional(data.ConsumeRandomLengthString(17)) : std::nullopt);
    case 7:
      session.setAb(record(data));
      session.setLeftVolume(record(data));
      return session.setRightVolue(record(data));
    default:
      loop.runFor(std::chrono::milliseconds(data.ConsumeIntegralInRange(0, 9000)));
      fuzz::expect(session.playerGetData().size() == kBlockBytes, "a block is whole");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static fuzz::FuzzMachine fuzzed;
  FuzzedDataProvider data(bytes, size);
  // A loop of its own, so that no timer of an earlier session is left; the rest of the machine stays.
  const auto loop = std::make_shared<SimulatedRunLoop>();
  Platform platform = Platform::current();
  platform.runLoop = loop;
  platform.audioOutput = std::make_shared<SilentOutput>();
  Platform::setCurrent(std::move(platform));

  const auto delegate = watchingDelegate();
  const auto session = std::dynamic_pointer_cast<ORNManualHearingTest>(
      ORNHearingTest::initWithTestType(data.ConsumeIntegralInRange(0, 2)));
  session->setDelegate(delegate);
  for (int steps = 0; steps < 24 && data.remaining_bytes() > 0; ++steps) step(*session, *loop, data);
  for (const bool isLeft : {false, true}) {
    const auto result = session->getTestResult(isLeft);
    for (const auto& [hz, db] : *result) fuzz::expect(intValue(db) >= -5 && intValue(db) <= 90, "a result is a level");
    ORNHearingTest::computeResultString(ORNHearingTest::computeEarTestResult(*result));
  }
  return 0;
}
