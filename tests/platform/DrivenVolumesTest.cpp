#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/platform/linux/DrivenVolumes.h>

namespace orn {
namespace {

using namespace std::chrono_literals;

/// A sound server, its user, and tests on it. Volumes are percent of the left and the right channel.
class Desk {
 public:
  void plug(const std::string& sink, const std::string& port, unsigned left, unsigned right, bool isMuted = false) {
    SoundOutput output;
    output.key = {sink, port};
    state_.outputs.push_back(output);
    state_.defaultSink = sink;
    set(sink, left, right, isMuted);
  }
  void unplug(const std::string& sink) {
    std::erase_if(state_.outputs, [&](const SoundOutput& output) { return output.key.sink == sink; });
    tell();
  }

  /// The user does it, or the server by itself.
  void set(const std::string& sink, unsigned left, unsigned right, bool isMuted = false) {
    output(sink).volume = {2, {percent(left), percent(right)}};
    output(sink).isMuted = isMuted;
    tell();
  }

  void startTest() {
    volumes_.begin();
    for (int i = 0; i < 2; ++i) drive(1);
  }
  void drive(float volume) { make(volumes_.drive(state_, volume)); }
  void endTest() { make(volumes_.putBack(state_, 0)); }
  void pass(DrivenVolumes::Time time) { time_ += time; }

  /// Such as "30 80", "muted" after it.
  std::string volume(const std::string& sink) {
    const SoundOutput& one = output(sink);
    const auto text = [](pa_volume_t volume) {
      return std::to_string((volume * 100 + PA_VOLUME_NORM / 2) / PA_VOLUME_NORM);
    };
    return text(one.volume.values[0]) + " " + text(one.volume.values[1]) + (one.isMuted ? " muted" : "");
  }

 private:
  static pa_volume_t percent(unsigned part) { return PA_VOLUME_NORM * part / 100; }

  SoundOutput& output(const std::string& sink) {
    return *std::find_if(state_.outputs.begin(), state_.outputs.end(),
                         [&](const SoundOutput& one) { return one.key.sink == sink; });
  }
  void make(const std::vector<DrivenVolumes::Setting>& settings) {
    for (const auto& [key, loudness] : settings) {
      output(key.sink).volume = loudness.volume;
      output(key.sink).isMuted = loudness.isMuted;
      volumes_.wasMade({key, loudness}, time_);
    }
    tell();
  }
  void tell() {
    const auto settings = volumes_.see(state_, time_);
    if (!settings.empty()) make(settings);
  }

  DrivenVolumes volumes_;
  SoundServerState state_;
  DrivenVolumes::Time time_{};
};

TEST(DrivenVolumes, AreAsTheUserLeftThemAfterAnyNumberOfTests) {
  const struct {
    const char* name;
    std::function<void(Desk& desk)> happens;
    std::string phones, speaker;
  } table[] = {
      {"a test",
       [](Desk& desk) {
         desk.startTest();
         EXPECT_EQ(desk.volume("phones"), "100 100");
         desk.endTest();
       },
       "30 80 muted", "50 50"},
      {"tests from full and from beyond it, and changes between",
       [](Desk& desk) {
         for (const auto& [left, right] : {std::pair{100U, 100U}, {140U, 60U}, {25U, 75U}}) {
           desk.set("phones", left, right);
           desk.startTest();
           desk.endTest();
         }
       },
       "25 75", "50 50"},
      {"put back twice, and changed between",
       [](Desk& desk) {
         desk.startTest();
         desk.endTest();
         desk.set("phones", 60, 60);
         desk.endTest();
         desk.pass(1min);
         desk.set("phones", 60, 70);
         desk.endTest();
       },
       "60 70", "50 50"},
      {"lost in each of several tests, which begin sooner or later",
       [](Desk& desk) {
         for (const auto pause : {0s, 5s, 1s, 60s}) {
           desk.startTest();
           desk.unplug("phones");
           desk.endTest();
           desk.plug("phones", "", 100, 100);
           desk.pass(1s);
           desk.set("phones", 100, 100);  // the server, by what it saw last
           desk.pass(pause);
         }
       },
       "30 80 muted", "50 50"},
      {"lost in one test, and the next one on another output",
       [](Desk& desk) {
         desk.startTest();
         desk.unplug("phones");
         desk.endTest();
         desk.startTest();  // on what is the output now
         desk.plug("phones", "", 74, 74);
         desk.endTest();
       },
       "30 80 muted", "50 50"},
      {"changed a moment after it came back",
       [](Desk& desk) {
         desk.startTest();
         desk.unplug("phones");
         desk.endTest();
         desk.plug("phones", "", 100, 100);
         desk.pass(1s);
         desk.set("phones", 35, 85);
         desk.startTest();
         desk.endTest();
       },
       "35 85", "50 50"},
      {"not put back by two tests",
       [](Desk& desk) {
         desk.startTest();
         desk.startTest();
         desk.unplug("phones");
         desk.plug("phones", "", 74, 74);  // the server
         desk.startTest();
         desk.endTest();
       },
       "30 80 muted", "50 50"},
      {"set by the host on the user's behalf",
       [](Desk& desk) {
         desk.drive(0.6F);
         desk.startTest();
         desk.endTest();
       },
       "60 60", "50 50"},
      {"not put back by one test, but changed since",
       [](Desk& desk) {
         desk.startTest();
         desk.set("phones", 20, 20);
         desk.startTest();
         desk.endTest();
       },
       "20 20", "50 50"},
      {"a plug that is drawn, so that the same sink goes to another port",
       [](Desk& desk) {
         desk.unplug("speaker");
         desk.plug("speaker", "jack", 10, 10);
         desk.startTest();
         desk.unplug("speaker");
         desk.plug("speaker", "", 50, 50);
         desk.endTest();
         EXPECT_EQ(desk.volume("speaker"), "50 50");
         desk.unplug("speaker");
         desk.plug("speaker", "jack", 100, 100);
       },
       "30 80 muted", "10 10"},
  };
  for (const auto& [name, happens, phones, speaker] : table) {
    Desk desk;
    desk.plug("speaker", "", 50, 50);
    desk.plug("phones", "", 30, 80, true);
    desk.pass(1min);
    happens(desk);
    EXPECT_EQ(desk.volume("phones"), phones) << name;
    EXPECT_EQ(desk.volume("speaker"), speaker) << name;
  }
}

}  // namespace
}  // namespace orn
