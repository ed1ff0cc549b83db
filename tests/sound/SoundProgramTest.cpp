#include <gmock/gmock.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <thread>
#include <nlohmann/json.hpp>

#include "SoundFixture.h"
#include "hearing-service/HearingService.h"

namespace orn {
namespace {

using namespace std::chrono_literals;
using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

/// The program as somebody would start it, with a sound server and settings of the test's own.
class SoundProgram : public testing::Test {
 protected:
  SoundProgram() {
    audiometer_ = server_.addAudiometer();
    server_.addSpeaker();
    server_.setDefault("audiometer");
    server_.control("set-sink-volume audiometer 21% 64%");
    volumes_ = server_.volumes("audiometer");
  }

  Program start(const std::string& arguments) const {
    return Program("env PULSE_SERVER=" + server_.address() + " HOME=" + server_.folder() + " " ORN_HEARING_TEST " " +
                   arguments + " >" + server_.folder() + "/out 2>" + server_.folder() + "/err");
  }
  int run(const std::string& arguments) const { return start(arguments).end(); }

  std::string printed(const std::string& file) const {
    std::ifstream stream(server_.folder() + "/" + file);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  template <class Condition>
  static bool comes(Condition condition, std::chrono::seconds longest = 10s) {
    for (auto waited = 0ms; waited < longest; waited += 10ms) {
      if (condition()) return true;
      std::this_thread::sleep_for(10ms);
    }
    return false;
  }

  bool isFull() const {
    return comes([&] { return server_.volumes("audiometer").find("100%") != std::string::npos; });
  }
  /// Somebody ended the program, which has put the volume back and kept nothing.
  void expectInterrupted(Program& program, int signal) {
    EXPECT_EQ(program.end(signal), 1);
    EXPECT_EQ(printed("err"), "hearing-test: interrupted; nothing of the test is kept\n");
    EXPECT_EQ(server_.volumes("audiometer"), volumes_);
  }

  /// Registers somebody whose service answers nothing from then on.
  std::string slowService() {
    const std::string host = " --host 127.0.0.1:" + std::to_string(service_.port());
    EXPECT_EQ(run("register --app-key KEY --id user --birthday 1980-03-05 --phone 1" + host), 0);
    service_.misbehave({service::Misbehaviour::Kind::Delay, 10min});
    return host;
  }

  TestSoundServer server_{ServerKind::PulseAudio};
  service::HearingService service_;
  std::string audiometer_, volumes_;
};

const std::string kRun = "run --listener --frequencies 1000 --calibration " ORN_CALIBRATION;

TEST_F(SoundProgram, ShowsTheDevices) {
  ASSERT_EQ(run("devices --json"), 0) << printed("err");
  const json found = json::parse(printed("out"));
  EXPECT_EQ(found["route"], "HeadsetBT");
  EXPECT_EQ(found["audiometer"], "AA:BB:CC:DD:EE:FF");
  EXPECT_EQ(found["outputs"].at(0)["name"], "KV50-1234 Audiometer");
  EXPECT_NEAR(found["volume"].get<double>(), 0.425, 0.001);
  server_.kill();
  ASSERT_EQ(run("devices"), 0);
  EXPECT_THAT(printed("out"), HasSubstr("No output"));
  ASSERT_EQ(run(kRun), 1);
  EXPECT_THAT(printed("err"), HasSubstr("neither to an audiometer nor to earphones"));
}

TEST_F(SoundProgram, AVirtualListenerTakesTheTestAndTheServiceIsNotWaitedFor) {
  slowService();
  Program program = start(kRun + " --json --right 1000=41 --left 1000=53");
  ASSERT_TRUE(comes([&] { return json::accept(printed("out")); }, 120s)) << printed("err");
  EXPECT_TRUE(comes([&] { return server_.volumes("audiometer") == volumes_; }));
  EXPECT_EQ(waitpid(program.process(), nullptr, WNOHANG), 0) << "the service has the result";
  EXPECT_EQ(program.end(SIGTERM), 1);
  EXPECT_THAT(printed("err"), EndsWith("hearing-test: interrupted before the service had taken the result\n"));
  const json report = json::parse(printed("out"));
  EXPECT_EQ(report["right"], json::parse(R"({"1000hz":"45"})"));
  EXPECT_EQ(report["left"], json::parse(R"({"1000hz":"55"})"));
  for (const json& tone : report["presentations"]) {
    const double level = std::stod(tone["db"].get<std::string>());
    EXPECT_NEAR(tone["measured"].get<double>(), level, 1) << tone;
  }
}

TEST_F(SoundProgram, AnInterruptOrALostDevicePutsTheVolumeBack) {
  const std::string elsewhere = server_.volumes("speaker");
  for (const int signal : {SIGINT, SIGTERM, 0}) {
    const std::ofstream emptied(server_.folder() + "/out");
    Program program = start(kRun);
    ASSERT_TRUE(comes([&] { return printed("out").find("Testing the right ear") != std::string::npos; }));
    EXPECT_THAT(server_.volumes("audiometer"), HasSubstr("100%"));
    if (signal == SIGINT) {
      server_.control("set-sink-volume audiometer 50%");
      EXPECT_TRUE(isFull()) << "the volume is held, at the next tone at the latest";
    }
    if (signal != 0) {
      expectInterrupted(program, signal);
      continue;
    }
    server_.remove(audiometer_);
    EXPECT_EQ(program.end(), 1);
    EXPECT_EQ(printed("err"), "hearing-test: the device was disconnected\n");
    EXPECT_EQ(server_.volumes("speaker"), elsewhere);
  }
}

TEST_F(SoundProgram, AnInterruptWhileItFetchesPutsTheVolumeBack) {
  Program fetching = start("run --listener" + slowService());
  ASSERT_TRUE(isFull());
  expectInterrupted(fetching, SIGHUP);
}

TEST_F(SoundProgram, ThatIsSuspendedWhileAToneSoundsKeepsNothingAndPutsTheVolumeBack) {
  const Recording recording(server_, "audiometer");
  Program program = start(kRun + " --json");
  ASSERT_TRUE(comes([&] { return !recording.isSilent(); }, 20s));
  kill(program.process(), SIGSTOP);
  int status = 0;
  waitpid(program.process(), &status, WUNTRACED);
  ASSERT_TRUE(WIFSTOPPED(status));
  EXPECT_THAT(server_.volumes("audiometer"), HasSubstr("100%"));
  std::this_thread::sleep_for(5s);  // more than the tone had left
  EXPECT_EQ(program.end(SIGCONT), 1);
  EXPECT_THAT(printed("err"), EndsWith("hearing-test: the program was held up; nothing of the test is kept\n"));
  EXPECT_EQ(printed("out"), "");
  EXPECT_EQ(server_.volumes("audiometer"), volumes_);
}

}  // namespace
}  // namespace orn
