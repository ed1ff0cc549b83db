#include <array>
#include <csignal>
#include <deque>
#include <fstream>
#include <future>
#include <utility>
#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>

#include "tests/platform/Environment.h"
#include "tests/service/ClientAndService.h"
#include "tls/TestAuthority.h"

namespace orn::service {
namespace {

using testing::ElementsAre;

/// The program as a child process; ends with the test at the latest.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    std::array<int, 2> out{}, error{};
    if (pipe(out.data()) != 0 || pipe(error.data()) != 0) throw std::runtime_error("no pipe");
    arguments.insert(arguments.begin(), HEARING_SERVICE);
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      dup2(out[1], STDOUT_FILENO);
      dup2(error[1], STDERR_FILENO);
      for (const int end : {out[0], out[1], error[0], error[1]}) close(end);
      execv(argv[0], argv.data());
      _exit(127);
    }
    for (const int end : {out[1], error[1]}) close(end);
    out_.reset(fdopen(out[0], "r"));
    error_.reset(fdopen(error[0], "r"));
  }
  ~Program() {
    if (process_ > 0) end(SIGKILL);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  std::string line() { return lineOf(*out_); }
  std::string errorLine() { return lineOf(*error_); }

  /// The exit status; -1 if a signal ended the program.
  int end(int signal = 0) {
    int status = 0;
    if (signal != 0) kill(process_, signal);
    waitpid(std::exchange(process_, 0), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  static std::string lineOf(FILE& stream) {
    std::array<char, 4096> buffer{};
    return fgets(buffer.data(), buffer.size(), &stream) ? buffer.data() : "";
  }

  pid_t process_ = 0;
  std::unique_ptr<FILE, int (*)(FILE*)> out_{nullptr, fclose}, error_{nullptr, fclose};
};

struct ServiceProgram : ServiceTest {
  ServiceProgram() { service_.reset(); }
  std::string database() const { return folder_ / "tests.db"; }
};

std::uint16_t portOf(Program& program) { return static_cast<std::uint16_t>(std::stoi(program.line())); }

TEST_F(ServiceProgram, AnswersUntilASignalEndsItAndKeepsItsDatabase) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Program program({"--port", "0", "--print-port", "--db", database(), "--misbehave", "delay=1"});
    EXPECT_EQ(ask(portOf(program), kSubmit, submission().dump()).json().at("rspCode"), 0);
    EXPECT_EQ(program.end(signal), 0);
    EXPECT_EQ(program.line(), "");
    EXPECT_THAT(program.errorLine(),
                testing::MatchesRegex("Post /vrdnx/user/sdkJonDiagnose2/\\* 200 rspCode=0 [0-9]+ ms\n"));
    EXPECT_EQ(program.errorLine(), "");
    EXPECT_EQ(std::filesystem::status(database()).permissions(), std::filesystem::perms(0600));
    std::filesystem::permissions(database(), std::filesystem::perms(0644));  // as an earlier version left it
  }
  EXPECT_THAT(rows("SELECT COUNT(*), PRAGMA_integrity_check.integrity_check FROM tests, PRAGMA_integrity_check"),
              ElementsAre(ElementsAre("2", "ok")));
}

TEST_F(ServiceProgram, EndsInTimeWhoeverHoldsItsDatabase) {
  Program program({"--print-port", "--db", database()});
  const std::uint16_t port = portOf(program);
  sqlite3* other = nullptr;
  EXPECT_EQ(sqlite3_open(database().c_str(), &other), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  std::deque<Connection> clients;
  for (int i = 0; i < 3; ++i) clients.emplace_back(port).send(requestText("Post", kSubmit, submission().dump()));
  EXPECT_EQ(ask(port, "/health", "", "GET").json().at("rspCode"), 0);  // by now they wait, or soon will
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(program.end(SIGTERM), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
  EXPECT_THAT(program.errorLine(), testing::StartsWith("GET /health 200"));
  sqlite3_close(other);
  EXPECT_EQ(rows("SELECT 1 FROM tests").size(), 0U);
}

TEST_F(ServiceProgram, DoesNotStandStillForALogThatNobodyReads) {
  Program program({"--print-port"});
  const std::uint16_t port = portOf(program);
  for (int i = 0; i < 2000; ++i) ask(port, "/health", "", "GET");  // twice what a pipe holds
  EXPECT_EQ(program.end(SIGTERM), 0);
}

TEST_F(ServiceProgram, LogsPersonsOnlyIfAsked) {
  const std::string target = "/vrdnx/user/sdkJonDiagnose2/someuser/somekey";
  for (const bool isAsked : {false, true}) {
    std::vector<std::string> arguments = {"--print-port"};
    if (isAsked) arguments.emplace_back("--log-personal");
    Program program(arguments);
    const std::uint16_t port = portOf(program);
    ask(port, kRegister, profile({{"gender", "5"}, {"phone", "13900000000"}}).dump());
    ask(port, target, submission().dump());
    ask(port, "/13800000000", "");
    const std::string logged = program.errorLine() + program.errorLine() + program.errorLine();
    EXPECT_THAT(logged, testing::HasSubstr(" ms: gender is neither 0 nor 1"));
    for (const char* person : {"Li", "13900000000", "someuser", "somekey", "13800000000"}) {
      EXPECT_EQ(logged.find(person) != std::string::npos, isAsked) << person << "\n" << logged;
    }
    EXPECT_EQ(program.end(SIGTERM), 0);
  }
}

TEST_F(ServiceProgram, SpeaksTlsAloneWithACertificate) {
  TestAuthority authority;
  const auto [certificate, key] = authority.issue("IP:127.0.0.1");
  Program program({"--print-port", "--certificate", certificate, "--key", key, "--address", "0.0.0.0"});
  const std::uint16_t port = portOf(program);
  Connection idle(port);  // holds nobody up, not even the end
  EXPECT_EQ(ask(port, "/health", "", "GET").status, 0);
  {
    const Environment trusted("SSL_CERT_FILE", authority.certificate().c_str());
    std::promise<URLReply> reply;
    LinuxURLSession session;
    session.dataTask({.url = "https://127.0.0.1:" + std::to_string(port) + kHistory,
                      .method = "Post",
                      .headers = {},
                      .body = "sdkKey=k&sdkUseId=u&"},
                     [&](URLReply got) { reply.set_value(std::move(got)); });
    EXPECT_EQ(reply.get_future().get().body, R"({"listenTests":[],"rspCode":0,"rspDesc":"ok"})");
  }
  EXPECT_EQ(program.end(SIGTERM), 0);

  Program mismatched({"--certificate", certificate, "--key", authority.issue("IP:127.0.0.1").key});
  EXPECT_THAT(mismatched.errorLine(), testing::MatchesRegex("hearing-service: can't listen on .+\n"));
  EXPECT_EQ(mismatched.end(), 1);
}

TEST_F(ServiceProgram, FailsInOneLineAndTellsWrongUsage) {
  HearingService taken;
  const std::string none = folder_ / "none" / "tests.db", noDatabase = folder_ / "text";
  std::ofstream(noDatabase) << std::string(4096, 'x');
  const std::pair<int, std::vector<std::string>> table[] = {{1, {"--port", std::to_string(taken.port())}},
                                                            {1, {"--db", none}},
                                                            {1, {"--db", noDatabase}},
                                                            {1, {"--address", "192.0.2.1", "--allow-plain"}},
                                                            {1, {"--certificate", noDatabase, "--key", none}},
                                                            {2, {"--port", "65536"}},
                                                            {2, {"--misbehave", "well"}},
                                                            {2, {"--address", "0.0.0.0"}},
                                                            {2, {"--address", "localhost"}},
                                                            {2, {"--certificate", "/dev/null"}},
                                                            {2, {"--key", "/dev/null"}},
                                                            {2, {"--db", ""}},
                                                            {2, {"extra"}}};
  for (const auto& [code, arguments] : table) {
    SCOPED_TRACE(arguments.front() + " " + arguments.back());
    Program program(arguments);
    EXPECT_EQ(program.line(), "");
    const std::string said = program.errorLine();
    EXPECT_TRUE(code == 2 ? !said.empty() : said.starts_with("hearing-service: ") && program.errorLine().empty());
    EXPECT_EQ(program.end(), code);
  }
  for (const char* asked : {"--help", "--version"}) {
    Program program({asked});
    EXPECT_NE(program.line(), "");
    EXPECT_EQ(program.end(), 0);
  }
}

}  // namespace
}  // namespace orn::service
