#include <gmock/gmock.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <nlohmann/json.hpp>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>

#include "hearing-service/HearingService.h"

namespace {

using nlohmann::json;
using orn::service::HearingService;
using testing::HasSubstr;

struct ProgramRun {
  int code = -1;
  std::string out, err;
};

std::string contents(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct HearingTestProgram : testing::Test {
  ProgramRun run(const std::string& arguments) {
    const std::string command =
        "HOME=" + folder + " " + ORN_HEARING_TEST + " " + arguments + " >" + folder + "/out 2>" + folder + "/err";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(folder + "/out"), contents(folder + "/err")};
  }

  const orn::contract::TemporaryFolder temporary;
  const std::string folder = temporary.path();
};

TEST_F(HearingTestProgram, PrintsOneJsonObjectAndNothingElse) {
  const ProgramRun ran = run("simulate --json --frequencies 1000,8000 --left 1000=33,8000=15 --right 1000=50,8000=91");
  ASSERT_EQ(ran.code, 0) << ran.err;
  const json report = json::parse(ran.out);
  EXPECT_EQ(report["left"], json::parse(R"({"1000hz":"35","8000hz":"15"})"));
  EXPECT_EQ(report["right"], json::parse(R"({"1000hz":"50","8000hz":"90"})"));
  const json& first = report["presentations"].at(0);
  EXPECT_EQ(first["at"], 4.0);
  EXPECT_EQ(first["ear"], "right");
  EXPECT_EQ(first["hz"], "1000hz");
  EXPECT_EQ(first["db"], "40db");
  EXPECT_EQ(first["heard"], false);
  EXPECT_NEAR(first["measured"].get<double>(), 40, 1);
  EXPECT_GT(report["simulatedSeconds"], report["elapsedSeconds"]);
  EXPECT_EQ(ran.err, "");
}

TEST_F(HearingTestProgram, ShowsAPersonWhatWasFoundBesideWhatIsTrueAndWritesTheSound) {
  const std::string path = folder + "/test.wav";
  const ProgramRun ran = run("simulate --frequencies 500 --left 500=32 --right 500=47 --wav " + path);
  EXPECT_EQ(ran.code, 0);
  EXPECT_THAT(ran.out, HasSubstr("  500 Hz     50 dB     47 dB"));
  EXPECT_THAT(ran.out, HasSubstr("  500 Hz     35 dB     32 dB"));
  const std::string file = contents(path);
  ASSERT_GT(file.size(), 44U);
  EXPECT_EQ(file.substr(0, 4), "RIFF");
  EXPECT_EQ(file.substr(22, 2), std::string("\x02\x00", 2));  // stereo
}

TEST_F(HearingTestProgram, StudiesTheSameListenersWithAnyNumberOfWorkers) {
  const auto study = [this](const std::string& more) { return run("study --listeners 5 --json " + more).out; };
  const std::string alone = study("--workers 1");
  const json report = json::parse(alone)["studies"].at(0);
  EXPECT_EQ(report["overall"]["thresholds"], 5 * 2 * 4);
  EXPECT_EQ(report["frequencies"].size(), 4U);
  EXPECT_EQ(study("--workers 3"), alone);
  EXPECT_EQ(study(""), alone);
  EXPECT_NE(study("--seed 2"), alone);
}

TEST_F(HearingTestProgram, MeasuresEveryCellOfBothPathsAndEars) {
  const ProgramRun ran = run("conformance --json");
  ASSERT_EQ(ran.code, 0) << ran.err;
  const json paths = json::parse(ran.out)["paths"];
  ASSERT_EQ(paths.size(), 2U);
  for (const json& path : paths) {
    EXPECT_EQ(path["cells"].size(), 2 * 7 * 16U);
    const bool isOneStream = path["path"] == "audiometer";  // which both channels have
    for (const json& cell : path["cells"]) {
      EXPECT_NEAR(cell["levelError"].get<double>(), 0, 1) << cell;
      EXPECT_EQ(cell["otherEar"], isOneStream ? cell["level"] : json()) << cell;
    }
  }
}

TEST_F(HearingTestProgram, WrongUsageIsExitTwoAndFailuresAreOneLine) {
  for (const char* wrong :
       {"", "nonsense", "simulate --type manual", "simulate --left 1000", "simulate --left 750=20",
        "simulate --left 1000=loud", "simulate --left 1000=nan", "simulate --frequencies 1001", "simulate --guess 2",
        "simulate --slope -1", "study --listeners 0", "study --correlation 2", "conformance --path nowhere"}) {
    EXPECT_EQ(run(wrong).code, 2) << wrong;
  }
  std::ofstream(folder + "/refused.json") << R"({"rspCode":1,"deviceVolumeIOS":[]})";
  std::ofstream(folder + "/garbage.json") << "{]";
  std::ofstream(folder + "/unreadable.json") << R"({"rspCode":0,"deviceVolumeIOS":[{"ear":1,"s1000":"x"},{"ear":2}]})";
  for (const std::string& failing :
       {"--calibration " + folder + "/none.json", "--calibration " + folder + "/refused.json",
        "--calibration " + folder + "/garbage.json", "--path earphones --calibration " + folder + "/unreadable.json",
        "--wav " + folder + "/no/such/folder.wav"}) {
    const ProgramRun ran = run("simulate --json " + failing);
    EXPECT_EQ(ran.code, 1) << failing;
    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    EXPECT_EQ(ran.out, "") << failing;
  }
  for (const char* command : {"study", "conformance"}) {
    EXPECT_EQ(run(std::string(command) + " --calibration " + folder + "/refused.json").code, 1) << command;
  }
  EXPECT_EQ(run("--help").code, 0);
  EXPECT_EQ(run("simulate --help").code, 0);
}

/// The options of a registration: "--host" with the service's address, and a user.
std::string hostOf(const HearingService& service) { return " --host 127.0.0.1:" + std::to_string(service.port()); }
std::string registers(const HearingService& service, const std::string& birthday = "1980-03-05") {
  return "register --app-key KEY --id user --phone 1 --birthday " + birthday + hostOf(service);
}

TEST_F(HearingTestProgram, TheServiceHasTheTestAndWhatItDoesNotTakeIsSaidInOneLine) {
  HearingService service;
  const std::string simulates = "simulate --json --frequencies 1000 --left 1000=20 --right 1000=35" + hostOf(service);
  for (const std::string& command : {simulates, registers(service), simulates}) {
    ASSERT_EQ(run(command).code, 0) << command;
  }
  const json stored = json::parse(run("history --json").out).at("tests");
  ASSERT_EQ(stored.size(), 1U) << "the first test was taken by nobody";
  EXPECT_EQ(stored[0]["left"]["1000hz"], "20");
  EXPECT_EQ(stored[0]["left"]["125hz"], "-1");
  EXPECT_EQ(stored[0]["right"]["1000hz"], "35");
  using enum orn::service::Misbehaviour::Kind;
  for (const auto& [kind, why] :
       {std::pair(Refuse, "refused as it was told to"), {Garbage, "parse error"}, {NoBody, "the reply has no body"}}) {
    service.misbehave({kind});
    for (const std::string& command : {simulates, registers(service), std::string("history")}) {
      const ProgramRun ran = run(command);
      EXPECT_EQ(ran.code, 1) << command;
      EXPECT_THAT(ran.err, HasSubstr(why)) << command;
      EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
      EXPECT_EQ(ran.out.empty(), command != simulates) << "the calibration is cached, and the test was taken";
    }
  }
}

TEST_F(HearingTestProgram, ABirthdayIsADayFrom1900ToToday) {
  const HearingService service;
  for (const char* birthday :
       {"1080-03-05", "1899-12-31", "2200-01-01", "1980-02-30", "1980-03", "05.03.1980", "1980-3/5"}) {
    EXPECT_EQ(run(registers(service, birthday)).code, 2) << birthday;
  }
  for (const char* birthday : {"1900-01-01", "1980-3-5", "1980/12/5", "1980.3.15", "19800305", "$(date +%Y-%m-%d)"}) {
    EXPECT_EQ(run(registers(service, birthday)).code, 0) << birthday;
  }
}

}  // namespace
