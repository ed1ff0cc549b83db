#include <ORNHearingTestSDK/contracts/AudioSessionContract.h>

#include <cmath>
#include <limits>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <ORNHearingTestSDK/contracts/Checking.h>

namespace orn::contract {
namespace {

using namespace std::chrono_literals;

class SessionCheck {
 public:
  using Told = std::vector<std::int32_t>;

  /// The first route that a session finds may be told of as a change; that is over once this has returned.
  explicit SessionCheck(AudioSessionUnderTest session) : underTest_(std::move(session)) {
    (void)this->session().currentRoute();
    underTest_.runFor(100ms);
  }

  AudioSession& session() { return *underTest_.session; }

  void needVolume() {
    if (!underTest_.hasVolume) throw NotChecked{"needs an output whose volume can be set"};
  }
  bool hasVolume() const { return underTest_.hasVolume; }
  void expectVolumeFixed() {
    const float before = session().outputVolume();
    expect(session().setOutputVolume(0.5F) == std::errc::not_supported, "it succeeds, or gives another error");
    expect(session().outputVolume() == before, "another volume is told of all the same");
  }
  void plug() { happen(underTest_.plug, "plug"); }
  void unplug() { happen(underTest_.unplug, "unplug"); }
  void unplugAll() { happen(underTest_.unplugAll, "unplugAll"); }
  void interrupt(std::int32_t type) {
    needed(underTest_.interrupt, "interrupt")(type);
    runUntilTold();
  }

  /// A new observer, which notes what it is told and then makes another call.
  std::shared_ptr<const AudioSessionObserver> observe(Told& told, std::function<void()> also = {}) {
    const auto note = [this, &told, also](std::int32_t value) {
      {
        const std::lock_guard lock(mutex_);
        told.push_back(value);
        isElsewhere_ = isElsewhere_ || std::this_thread::get_id() != here_;
      }
      if (also) also();
    };
    auto observer = std::make_shared<const AudioSessionObserver>(AudioSessionObserver{note, note});
    session().addObserver(observer);
    return observer;
  }

  bool wasToldElsewhere() const { return isElsewhere_; }

 private:
  void happen(const std::function<void()>& hook, const char* name) {
    needed(hook, name)();
    runUntilTold();
  }

  void runUntilTold() {
    for (int i = 0; i < 30; ++i) underTest_.runFor(10ms);
  }

  AudioSessionUnderTest underTest_;
  std::mutex mutex_;
  const std::thread::id here_ = std::this_thread::get_id();
  bool isElsewhere_ = false;
};

bool isNear(float one, float other) { return std::abs(one - other) < 0.01F; }

const Contract<SessionCheck> kAudioSessionContracts[] = {
    {"it is activated and takes a category",
     [](SessionCheck& check) {
       expect(!check.session().setActive(true), "setActive(true) fails");
       expect(!check.session().setCategory(AudioSessionCategory::Playback, 0), "the category Playback is refused");
       expect(
           !check.session().setCategory(AudioSessionCategory::PlayAndRecord, kAudioSessionCategoryOptionAllowBluetooth),
           "the category PlayAndRecord is refused");
       expect(!check.session().setActive(false), "setActive(false) fails");
     }},

    {"an output has a route text",
     [](SessionCheck& check) { expect(!check.session().routeText().value_or("").empty(), "there is none"); }},

    {"an output is a port with a name and a UID",
     [](SessionCheck& check) {
       const auto outputs = check.session().currentRoute().outputs;
       expect(!outputs.empty(), "there is no port");
       expect(!outputs[0].portName.empty() && !outputs[0].UID.empty(), "a text of it is empty");
     }},

    {"the volume that is set is the volume of the output; where none can be set, that is not_supported",
     [](SessionCheck& check) {
       if (!check.hasVolume()) return check.expectVolumeFixed();
       for (const float volume : {1.0F, 0.0F, 0.5F, 0.9F}) {
         expect(!check.session().setOutputVolume(volume), "it can't be set");
         const float now = check.session().outputVolume();
         expect(isNear(now, volume), std::to_string(volume) + " was set, and it is " + std::to_string(now));
       }
     }},

    {"beyond 0 and 1 the nearer end counts, and a volume that is not a number is 0",
     [](SessionCheck& check) {
       check.needVolume();
       constexpr float none = std::numeric_limits<float>::quiet_NaN();
       for (const auto& [volume, result] : {std::pair{7.0F, 1.0F}, {-3.0F, 0.0F}, {1.0F, 1.0F}, {none, 0.0F}}) {
         (void)check.session().setOutputVolume(volume);
         expect(isNear(check.session().outputVolume(), result), std::to_string(volume) + " does not");
       }
     }},

    {"restoreOutputVolume() puts back the volume that was there before it was set",
     [](SessionCheck& check) {
       check.needVolume();
       const float before = check.session().outputVolume();
       (void)check.session().setOutputVolume(before < 0.5F ? 0.9F : 0.1F);
       expect(!check.session().restoreOutputVolume(before), "it fails");
       expect(isNear(check.session().outputVolume(), before), "the volume is another one");
     }},

    {"without an output there is no route text and no port",
     [](SessionCheck& check) {
       check.unplugAll();
       expect(!check.session().routeText(), "there is a route text");
       expect(check.session().currentRoute().outputs.empty(), "there is a port");
     }},

    {"without an output setOutputVolume() gives no_such_device",
     [](SessionCheck& check) {
       check.unplugAll();
       expect(check.session().setOutputVolume(1) == std::errc::no_such_device, "it succeeds, or gives another error");
     }},

    {"a new device becomes the route and every observer is told once",
     [](SessionCheck& check) {
       const auto before = check.session().currentRoute().outputs;
       SessionCheck::Told one, other;
       const auto first = check.observe(one), second = check.observe(other);
       check.plug();
       const auto after = check.session().currentRoute().outputs;
       expect(!after.empty() && (before.empty() || after[0].UID != before[0].UID), "the route is the same");
       expect(one.size() == 1 && other == one, "an observer was told more than once, or not at all");
       expect(one[0] != kAudioSessionRouteChangeReasonOldDeviceUnavailable, "the reason is that a device has gone");
     }},

    {"a device that goes is told of by the reason 2",
     [](SessionCheck& check) {
       check.plug();
       SessionCheck::Told told;
       const auto observer = check.observe(told);
       check.unplug();
       expect(!told.empty(), "nothing is told");
       expect(told[0] == kAudioSessionRouteChangeReasonOldDeviceUnavailable,
              "the reason is " + std::to_string(told[0]));
     }},

    {"an interruption is told of by type 1 when it begins and 0 when it has ended",
     [](SessionCheck& check) {
       SessionCheck::Told told;
       const auto observer = check.observe(told);
       check.interrupt(1);
       check.interrupt(kAudioSessionInterruptionTypeEnded);
       expect(told == SessionCheck::Told{1, 0}, std::to_string(told.size()) + " notices came, or of other types");
     }},

    {"notices come on the main thread",
     [](SessionCheck& check) {
       SessionCheck::Told told;
       const auto observer = check.observe(told);
       check.plug();
       expect(!told.empty(), "none comes");
       expect(!check.wasToldElsewhere(), "one came on another thread");
     }},

    {"an empty member of an observer is not called",
     [](SessionCheck& check) {
       const auto empty = std::make_shared<const AudioSessionObserver>();
       check.session().addObserver(empty);
       check.plug();
     }},

    {"an observer is not kept alive, and hears nothing once it has gone",
     [](SessionCheck& check) {
       SessionCheck::Told told;
       auto observer = check.observe(told);
       const std::weak_ptr<const AudioSessionObserver> watched = observer;
       observer.reset();
       expect(watched.expired(), "it is kept alive");
       check.plug();
       expect(told.empty(), "it is told");
     }},

    {"an observer may let go of another and add one from within a notice",
     [](SessionCheck& check) {
       SessionCheck::Told told, unheard, added;
       std::shared_ptr<const AudioSessionObserver> gone, fresh;
       const auto first = check.observe(told, [&] {
         gone.reset();
         if (!fresh) fresh = check.observe(added);
       });
       gone = check.observe(unheard);
       const auto last = check.observe(told);
       check.plug();
       expect(told.size() == 2, "not all observers were told once");
       expect(unheard.empty(), "an observer that had gone was told");
       check.unplug();
       expect(!added.empty(), "the one that was added hears nothing");
     }},
};

}  // namespace

Report checkAudioSession(const std::function<AudioSessionUnderTest()>& make) {
  return checkAll<SessionCheck>("AudioSession", kAudioSessionContracts, make);
}

}  // namespace orn::contract
