// Holds the web backend against the contracts of the platform's interfaces, in a browser that lets a program wait
// (WebAssembly's promise integration): contracts.html provides the functions that wait.

#include <emscripten/emscripten.h>

#include <memory>
#include <span>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/contracts/AudioOutputContract.h>
#include <ORNHearingTestSDK/contracts/AudioPlayerContract.h>
#include <ORNHearingTestSDK/contracts/AudioQueueContract.h>
#include <ORNHearingTestSDK/contracts/AudioSessionContract.h>
#include <ORNHearingTestSDK/contracts/DeviceContract.h>
#include <ORNHearingTestSDK/contracts/FileManagerContract.h>
#include <ORNHearingTestSDK/contracts/RunLoopContract.h>
#include <ORNHearingTestSDK/contracts/URLSessionContract.h>
#include <ORNHearingTestSDK/contracts/UserDefaultsContract.h>
#include <ORNHearingTestSDK/platform/web/WebAudioOutput.h>
#include <ORNHearingTestSDK/platform/web/WebAudioSession.h>
#include <ORNHearingTestSDK/platform/web/WebDevice.h>
#include <ORNHearingTestSDK/platform/web/WebFileManager.h>
#include <ORNHearingTestSDK/platform/web/WebRunLoop.h>
#include <ORNHearingTestSDK/platform/web/WebURLSession.h>
#include <ORNHearingTestSDK/platform/web/WebUserDefaults.h>

extern "C" {
void orn_test_wait(double milliseconds);
void orn_test_device(int isThere);
void orn_test_fill();
void orn_test_empty();
}

namespace {

using namespace orn::contract;
using std::chrono::nanoseconds;

void wait(nanoseconds span) { orn_test_wait(std::chrono::duration<double, std::milli>(span).count()); }

void takeDeviceAway() { orn_test_device(0); }
void bringDeviceBack() { orn_test_device(1); }

RunLoopUnderTest loop() { return {std::make_shared<orn::WebRunLoop>(), wait}; }

AudioUnderTest audio() {
  bringDeviceBack();
  wait(std::chrono::milliseconds(100));  // for what is still under way of the sound before
  const auto heard = std::make_shared<std::vector<std::int16_t>>();
  orn::listenToWebSound([heard](std::span<const std::int16_t> samples, auto) {
    heard->insert(heard->end(), samples.begin(), samples.end());
  });
  return {.output = std::make_shared<orn::WebAudioOutput>(std::make_shared<orn::WebRunLoop>()),
          .runFor = wait,
          .heard = [heard] { return std::exchange(*heard, {}); },
          .takeDeviceAway = takeDeviceAway,
          .bringDeviceBack = bringDeviceBack};
}

AudioSessionUnderTest session() {
  bringDeviceBack();
  return {.session = std::make_shared<orn::WebAudioSession>(),
          .runFor = wait,
          .hasVolume = false,
          .plug = {},  // a browser does not tell what is plugged in
          .unplug = takeDeviceAway,
          .unplugAll = takeDeviceAway,
          .interrupt = {}};  // an interruption is the loss of the device
}

/// Does not look at what arrives: a browser writes names of methods in capitals and sends no body with GET.
URLSessionUnderTest network() {
  return {.session = std::make_shared<orn::WebURLSession>(),
          .runFor = wait,
          .callsFromLoop = true,
          .answeringUrl = "/answer",
          .answer = "the answer",
          .brokenStatusUrl = "/broken",
          .refusingUrl = "http://127.0.0.1:9/",
          .silentUrl = "/silent",
          .arrived = {}};
}

UserDefaultsUnderTest defaults() {
  static int count = 0;
  const std::string key = "contract " + std::to_string(++count);
  return {.defaults = std::make_shared<orn::WebUserDefaults>(key),
          .reopen = [key] { return std::make_shared<orn::WebUserDefaults>(key); },
          .withFullDisk =
              [](const std::function<void()>& call) {
                orn_test_fill();
                call();
                orn_test_empty();
              }};
}

FileManagerUnderTest files() { return {.files = std::make_shared<orn::WebFileManager>(), .withFullDisk = {}}; }

std::shared_ptr<orn::Device> device() { return std::make_shared<orn::WebDevice>("1"); }

}  // namespace

extern "C" EMSCRIPTEN_KEEPALIVE int orn_check_contracts() {
  return conclude({checkDevice(device), checkUserDefaults(defaults), checkFileManager(files), checkURLSession(network),
                   checkRunLoop(loop), checkAudioSession(session), checkAudioOutput(audio), checkAudioPlayer(audio),
                   checkAudioQueue(audio)});
}

int main() { return 0; }
