#include <thread>
#include <utility>

#include "BrokenCopies.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

using Observer = std::shared_ptr<const AudioSessionObserver>;

struct BrokenSession final : AudioSession {
  std::error_code setActive(bool active) override { return real->setActive(active); }
  std::error_code setCategory(AudioSessionCategory category, std::uint32_t options) override {
    return breaks("it is activated") ? std::make_error_code(std::errc::io_error) : real->setCategory(category, options);
  }
  std::optional<std::string> routeText() const override {
    if (breaks("an output has a route text")) return std::nullopt;
    return breaks("without an output there is") ? "Speaker" : real->routeText();
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
    if (breaks("the volume that is set")) level *= level;
    if (breaks("beyond 0 and 1") && level > 1) level = 0;
    const std::error_code error = real->setOutputVolume(level);
    return breaks("without an output setOutputVolume()") ? std::error_code() : error;
  }
  std::error_code restoreOutputVolume(float level) override {
    return breaks("restoreOutputVolume() puts") ? std::error_code() : real->restoreOutputVolume(level);
  }

  void addObserver(std::weak_ptr<const AudioSessionObserver> observer) override {
    if (breaks("an observer may let go") && isTelling) return;
    if (breaks("an observer is not kept")) kept.push_back(observer.lock());
    const auto routeChange = [this, observer](std::int32_t reason) { tell(observer.lock(), reason); };
    const auto interruption = [observer](std::int32_t type) {
      observer.lock()->interruption(breaks("an interruption") ? 1 : type);
    };
    kept.push_back(std::make_shared<AudioSessionObserver>(AudioSessionObserver{routeChange, interruption}));
    real->addObserver(kept.back());
  }

  void tell(const Observer& observer, std::int32_t reason) {
    if (!observer || (!observer->routeChange && !breaks("an empty member"))) return;
    if (breaks("a device that goes")) reason = 0;
    if (breaks("notices come on")) return std::thread([&] { observer->routeChange(reason); }).join();
    isTelling = true;
    observer->routeChange(reason);
    isTelling = false;
  }

  std::shared_ptr<AudioSession> real;
  std::vector<Observer> kept;
  bool isTelling = false;
};

TEST(BrokenCopies, OfTheSessionAreNamed) {
  expectEachNamed<AudioSessionUnderTest>(checkAudioSession, [] {
    AudioSessionUnderTest copy = example::session();
    const auto broken = std::make_shared<BrokenSession>();
    broken->real = std::exchange(copy.session, broken);
    return copy;
  });
}

}  // namespace
}  // namespace orn::contract
