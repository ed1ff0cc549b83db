#include <atomic>
#include <thread>
#include <utility>

#include <ORNHearingTestSDK/contracts/DeviceContract.h>

#include "BrokenCopies.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

struct BrokenSession final : AudioSession {
  explicit BrokenSession(std::shared_ptr<AudioSession> session) : real(std::move(session)) {}

  std::error_code setActive(bool active) override { return real->setActive(active); }
  std::error_code setCategory(AudioSessionCategory category, std::uint32_t options) override {
    if (breaks("it is activated")) return std::make_error_code(std::errc::operation_not_permitted);
    return real->setCategory(category, options);
  }

  std::optional<std::string> routeText() const override {
    if (breaks("an output has a route text")) return std::nullopt;
    if (breaks("without an output there is")) return real->routeText().value_or("Speaker");
    return real->routeText();
  }
  AudioRouteDescription currentRoute() const override {
    AudioRouteDescription route = real->currentRoute();
    for (AudioPort& port : route.outputs) {
      if (breaks("an output is a port")) port.portName.clear();
      if (breaks("a new device becomes")) port.UID = "the same";
    }
    return route;
  }

  float outputVolume() const override { return real->outputVolume(); }
  std::error_code setOutputVolume(float level) override {
    if (breaks("the volume that is set") && level == 0.9F) level = 0.8F;
    if (breaks("beyond 0 and 1") && level > 1) level = 0;
    const std::error_code error = real->setOutputVolume(level);
    return breaks("without an output setOutputVolume()") ? std::error_code() : error;
  }
  std::error_code restoreOutputVolume(float level) override {
    return breaks("restoreOutputVolume() puts") ? std::error_code() : real->restoreOutputVolume(level);
  }

  void addObserver(std::weak_ptr<const AudioSessionObserver> observer) override {
    if (breaks("an observer is not kept")) kept = observer.lock();
    all.push_back(observer);
    own.push_back(std::make_shared<AudioSessionObserver>(
        AudioSessionObserver{[this, observer](std::int32_t reason) { tellOfRoute(observer.lock(), reason); },
                             [observer](std::int32_t type) {
                               const auto alive = observer.lock();
                               if (alive && alive->interruption)
                                 alive->interruption(breaks("an interruption") ? 1 : type);
                             }}));
    real->addObserver(own.back());
  }

  void tellOfRoute(const std::shared_ptr<const AudioSessionObserver>& observer, std::int32_t reason) {
    if (breaks("a device that goes") && reason == kAudioSessionRouteChangeReasonOldDeviceUnavailable) reason = 0;
    const auto tell = [reason](const std::shared_ptr<const AudioSessionObserver>& one) {
      if (one && (one->routeChange || breaks("an empty member"))) one->routeChange(reason);
    };
    if (breaks("notices come on")) return std::thread([&] { tell(observer); }).join();
    if (!breaks("an observer may let go")) return tell(observer);
    if (all.front().lock() != observer) return;
    std::vector<std::shared_ptr<const AudioSessionObserver>> held;  // whoever is there when the notice begins
    for (const auto& one : all) held.push_back(one.lock());
    for (const auto& one : held) tell(one);
  }

  std::shared_ptr<AudioSession> real;
  std::shared_ptr<const AudioSessionObserver> kept;
  std::vector<std::weak_ptr<const AudioSessionObserver>> all;
  std::vector<std::shared_ptr<const AudioSessionObserver>> own;
};

struct BrokenDevice final : Device {
  std::string machine() const override {
    return breaks("the texts stay the same") ? std::to_string(++count) : "Board 4";
  }
  std::string systemVersion() const override { return breaks("every text is one line") ? "1\n" : "1"; }
  std::string applicationIdentifier() const override { return "org.app"; }
  std::string applicationVersion() const override { return "1"; }

  mutable std::atomic<int> count = 0;
};

TEST(BrokenCopies, OfTheSessionAreNamed) {
  expectEachNamed<AudioSessionUnderTest>(checkAudioSession, [] {
    AudioSessionUnderTest copy = example::session();
    copy.session = std::make_shared<BrokenSession>(copy.session);
    return copy;
  });
}

TEST(BrokenCopies, OfTheDeviceAreNamed) {
  expectEachNamed<std::shared_ptr<Device>>(checkDevice, [] { return std::make_shared<BrokenDevice>(); });
}

}  // namespace
}  // namespace orn::contract
