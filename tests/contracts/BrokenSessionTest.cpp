#include <atomic>
#include <thread>
#include <utility>

#include <ORNHearingTestSDK/contracts/DeviceContract.h>

#include "BrokenCopies.h"
#include "examples/backend-contracts/SimulatedBackend.h"

namespace orn::contract {
namespace {

struct ChangedSession final : AudioSession {
  using Tell = std::function<void(const AudioSessionObserver&, std::int32_t)>;

  explicit ChangedSession(std::shared_ptr<AudioSession> session) : real(std::move(session)) {}

  std::error_code setActive(bool active) override { return real->setActive(active); }
  std::error_code setCategory(AudioSessionCategory category, std::uint32_t options) override {
    return configure ? configure() : real->setCategory(category, options);
  }
  std::optional<std::string> routeText() const override { return text ? text() : real->routeText(); }
  AudioRouteDescription currentRoute() const override { return route ? route() : real->currentRoute(); }
  float outputVolume() const override { return real->outputVolume(); }
  std::error_code setOutputVolume(float level) override {
    return volume ? volume(level) : real->setOutputVolume(level);
  }
  std::error_code restoreOutputVolume(float level) override {
    return restore ? restore() : real->restoreOutputVolume(level);
  }
  void addObserver(std::weak_ptr<const AudioSessionObserver> observer) override {
    if (adding) adding(observer);
    const auto forwards = [observer](const Tell& tell, std::int32_t value) {
      if (const auto alive = observer.lock()) tell(*alive, value);
    };
    wrapped.push_back(std::make_shared<AudioSessionObserver>(
        AudioSessionObserver{[this, forwards](std::int32_t reason) { forwards(tellRoute, reason); },
                             [this, forwards](std::int32_t type) { forwards(tellInterruption, type); }}));
    real->addObserver(wrapped.back());
  }

  std::shared_ptr<AudioSession> real;
  std::vector<std::shared_ptr<const AudioSessionObserver>> wrapped;
  std::function<std::error_code()> configure;
  std::function<std::optional<std::string>()> text;
  std::function<AudioRouteDescription()> route;
  std::function<std::error_code(float)> volume;
  std::function<std::error_code()> restore;
  std::function<void(std::weak_ptr<const AudioSessionObserver>)> adding;
  Tell tellRoute = [](const AudioSessionObserver& observer, std::int32_t reason) {
    if (observer.routeChange) observer.routeChange(reason);
  };
  Tell tellInterruption = [](const AudioSessionObserver& observer, std::int32_t type) {
    if (observer.interruption) observer.interruption(type);
  };
};

std::function<AudioSessionUnderTest()> sessionThat(const std::function<void(ChangedSession&, AudioSession&)>& change) {
  return [change] {
    AudioSessionUnderTest copy = example::session();
    const auto changed = std::make_shared<ChangedSession>(copy.session);
    change(*changed, *copy.session);
    copy.session = changed;
    return copy;
  };
}

std::function<AudioSessionUnderTest()> outputVolumeThat(const std::function<float(float)>& change) {
  return sessionThat([change](ChangedSession& session, AudioSession& real) {
    session.volume = [&real, change](float level) { return real.setOutputVolume(change(level)); };
  });
}

const std::vector<BrokenCopy<AudioSessionUnderTest>> kSessions = {
    {"it is activated", sessionThat([](ChangedSession& session, AudioSession&) {
       session.configure = [] { return std::make_error_code(std::errc::operation_not_permitted); };
     })},
    {"an output has a route text",
     sessionThat([](ChangedSession& session, AudioSession&) { session.text = [] { return std::nullopt; }; })},
    {"an output is a port", sessionThat([](ChangedSession& session, AudioSession& real) {
       session.route = [&real] {
         auto route = real.currentRoute();
         for (AudioPort& port : route.outputs) port.portName.clear();
         return route;
       };
     })},
    {"the volume that is set", outputVolumeThat([](float level) { return level == 0.9F ? 0.8F : level; })},
    {"beyond 0 and 1", outputVolumeThat([](float level) { return level > 1 ? 0 : level; })},
    {"restoreOutputVolume() puts",
     sessionThat([](ChangedSession& session, AudioSession&) { session.restore = [] { return std::error_code(); }; })},
    {"without an output there is", sessionThat([](ChangedSession& session, AudioSession& real) {
       session.text = [&real] { return real.routeText().value_or("Speaker"); };
     })},
    {"without an output setOutputVolume()", sessionThat([](ChangedSession& session, AudioSession& real) {
       session.volume = [&real](float level) { return (void)real.setOutputVolume(level), std::error_code(); };
     })},
    {"a new device becomes", sessionThat([](ChangedSession& session, AudioSession& real) {
       session.route = [&real, first = std::make_shared<std::optional<AudioRouteDescription>>()] {
         if (!real.routeText()) return AudioRouteDescription();
         if (!*first) *first = real.currentRoute();
         return **first;
       };
     })},
    {"a device that goes", sessionThat([](ChangedSession& session, AudioSession&) {
       session.tellRoute = [tell = session.tellRoute](const auto& observer, std::int32_t reason) {
         tell(observer, reason == kAudioSessionRouteChangeReasonOldDeviceUnavailable ? 0 : reason);
       };
     })},
    {"an interruption", sessionThat([](ChangedSession& session, AudioSession&) {
       session.tellInterruption = [tell = session.tellInterruption](const auto& observer, std::int32_t) {
         tell(observer, 1);
       };
     })},
    {"notices come on", sessionThat([](ChangedSession& session, AudioSession&) {
       session.tellRoute = [tell = session.tellRoute](const auto& observer, std::int32_t reason) {
         std::thread([&] { tell(observer, reason); }).join();
       };
     })},
    {"an empty member", sessionThat([](ChangedSession& session, AudioSession&) {
       session.tellRoute = [](const auto& observer, std::int32_t reason) { observer.routeChange(reason); };
     })},
    {"an observer is not kept", sessionThat([](ChangedSession& session, AudioSession&) {
       session.adding = [kept = std::shared_ptr<const AudioSessionObserver>()](const auto& observer) mutable {
         if (!kept) kept = observer.lock();
       };
     })},
    {"an observer may let go", sessionThat([](ChangedSession& session, AudioSession&) {
       // Whoever is there when a notice begins is told, whatever happens meanwhile.
       const auto all = std::make_shared<std::vector<std::weak_ptr<const AudioSessionObserver>>>();
       session.adding = [all](const auto& observer) { all->push_back(observer); };
       session.tellRoute = [all, tell = session.tellRoute](const auto& observer, std::int32_t reason) {
         if (all->front().lock().get() != &observer) return;
         std::vector<std::shared_ptr<const AudioSessionObserver>> held;
         for (const auto& one : *all) held.push_back(one.lock());
         for (const auto& one : held) {
           if (one) tell(*one, reason);
         }
       };
     })},
};

struct ChangedDevice final : Device {
  explicit ChangedDevice(std::function<std::string()> text) : model(std::move(text)) {}
  std::string machine() const override { return model(); }
  std::string systemVersion() const override { return "1"; }
  std::string applicationIdentifier() const override { return "org.app"; }
  std::string applicationVersion() const override { return "1"; }

  std::function<std::string()> model;
};

std::function<std::shared_ptr<Device>()> deviceThat(const std::function<std::string()>& model) {
  return [model] { return std::make_shared<ChangedDevice>(model); };
}

const std::vector<BrokenCopy<std::shared_ptr<Device>>> kDevices = {
    {"every text is one line", deviceThat([] { return "Board 4\n"; })},
    {"the texts stay the same",
     deviceThat([count = std::make_shared<std::atomic<int>>(0)] { return std::to_string(++*count); })},
};

TEST(BrokenCopies, OfTheSessionAreNamed) { expectNamed("AudioSession", checkAudioSession, kSessions); }
TEST(BrokenCopies, OfTheDeviceAreNamed) { expectNamed("Device", checkDevice, kDevices); }

}  // namespace
}  // namespace orn::contract
