#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <sstream>
#include <string>
#include <vector>

#include <ORNHearingTestSDK/platform/linux/DrivenVolumes.h>

namespace orn {
namespace {

/// A sound server, its user, and tests on it. Volumes are percent of the left and the right channel, such as "30/80",
/// with an "m" after them where the output is muted.
class Desk {
 public:
  /// Words: "begin" and "end" of a test; "drive60" by the host; "wait5" seconds; and of an output "phones", with its
  /// port perhaps, "+phones:jack=30/80" when it comes, "-phones" when it goes, "phones=30/80" when the user or the
  /// server by itself sets it, and "phones?30/80" for what it is expected to be.
  void play(const std::string& script) {
    std::istringstream words(script);
    for (std::string word; words >> word;) {
      SCOPED_TRACE(word);
      const std::size_t sign = word.find_first_of("=?");
      if (word == "begin") {
        volumes_.begin();
        for (int i = 0; i < 2; ++i) make(volumes_.drive(state_, 1));
      } else if (word == "end") {
        make(volumes_.putBack(state_, 0));
      } else if (word.starts_with("drive")) {
        make(volumes_.drive(state_, std::stof(word.substr(5)) / 100));
      } else if (word.starts_with("wait")) {
        time_ += std::chrono::seconds(std::stoi(word.substr(4)));
      } else if (word[0] == '-') {
        std::erase_if(state_.outputs, [&](const SoundOutput& one) { return one.key.sink == word.substr(1); });
        tell();
      } else if (word[sign] == '?') {
        EXPECT_EQ(volume(word.substr(0, sign)), word.substr(sign + 1));
      } else {
        set(word[0] == '+' ? plugged(word.substr(1, sign - 1)) : output(word.substr(0, sign)), word.substr(sign + 1));
      }
    }
  }

 private:
  SoundOutput& plugged(const std::string& name) {
    const std::size_t colon = std::min(name.find(':'), name.size());
    state_.outputs.emplace_back().key = {name.substr(0, colon), colon < name.size() ? name.substr(colon + 1) : ""};
    state_.defaultSink = name.substr(0, colon);
    return state_.outputs.back();
  }
  SoundOutput& output(const std::string& sink) {
    return *std::find_if(state_.outputs.begin(), state_.outputs.end(),
                         [&](const SoundOutput& one) { return one.key.sink == sink; });
  }

  void set(SoundOutput& output, const std::string& volume) {
    const auto percent = [](const std::string& text) {
      return PA_VOLUME_NORM * static_cast<pa_volume_t>(std::stoul(text)) / 100;
    };
    output.volume = {2, {percent(volume), percent(volume.substr(volume.find('/') + 1))}};
    output.isMuted = volume.back() == 'm';
    tell();
  }
  std::string volume(const std::string& sink) {
    const SoundOutput& one = output(sink);
    const auto percent = [](pa_volume_t volume) { return (volume * 100 + PA_VOLUME_NORM / 2) / PA_VOLUME_NORM; };
    return std::to_string(percent(one.volume.values[0])) + "/" + std::to_string(percent(one.volume.values[1])) +
           (one.isMuted ? "m" : "");
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
  const std::string lost = "begin -phones end +phones=100/100 wait1 phones=100/100 ";
  const std::pair<const char*, std::string> table[] = {
      {"a test", "begin phones?100/100 end phones?30/80m speaker?50/50"},
      {"tests from full and from beyond it, and changes between",
       "phones=100/100 begin end phones=140/60 begin end phones=25/75 begin end phones?25/75 speaker?50/50"},
      {"put back twice, and changed between",
       "begin end phones=60/60 end wait60 phones=60/70 end phones?60/70 speaker?50/50"},
      {"lost in each of several tests, which begin sooner or later",
       lost + lost + "wait5 " + lost + "wait1 " + lost + "wait60 phones?30/80m speaker?50/50"},
      {"lost in one test, and the next one on what is the output then",
       "begin -phones end begin +phones=74/74 end phones?30/80m speaker?50/50"},
      {"changed a moment after it came back",
       "begin -phones end +phones=100/100 wait1 phones=35/85 begin end phones?35/85 speaker?50/50"},
      {"not put back by two tests", "begin begin -phones +phones=74/74 begin end phones?30/80m speaker?50/50"},
      {"set by the host on the user's behalf", "drive60 begin end phones?60/60 speaker?50/50"},
      {"not put back by one test, but changed since", "begin phones=20/20 begin end phones?20/20 speaker?50/50"},
      {"a plug that is drawn, so that the same sink goes to another port",
       "-speaker +speaker:jack=10/10 begin -speaker +speaker=50/50 end speaker?50/50"
       " -speaker +speaker:jack=100/100 speaker?10/10 phones?30/80m"},
  };
  for (const auto& [name, script] : table) {
    SCOPED_TRACE(name);
    Desk desk;
    desk.play("+speaker=50/50 +phones=30/80m wait60 " + script);
  }
}

}  // namespace
}  // namespace orn
