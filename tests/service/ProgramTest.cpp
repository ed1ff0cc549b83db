#include <deque>
#include <fstream>
#include <future>
#include <sstream>
#include <gmock/gmock.h>
#include <sqlite3.h>

#include <ORNHearingTestSDK/platform/linux/LinuxURLSession.h>

#include "support/Program.h"
#include "tests/platform/Environment.h"
#include "tests/service/ClientAndService.h"
#include "tls/TestAuthority.h"

namespace orn::service {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

/// The program, with a port that the system chose.
struct Service : Program {
  explicit Service(const std::string& arguments, const std::string& log = "&1")
      : Program(HEARING_SERVICE " --print-port " + arguments + " 2>" + log) {}
  const std::uint16_t port = static_cast<std::uint16_t>(std::stoi(line()));
};

struct ServiceProgram : ServiceTest {
  ServiceProgram() { service_.reset(); }
  const std::string database_ = folder_.path() + "/tests.db";
};

TEST_F(ServiceProgram, AnswersUntilASignalEndsItAndKeepsItsDatabase) {
  const std::string log = folder_.path() + "/log";
  for (const int signal : {SIGTERM, SIGINT}) {
    Service program("--port 0 --misbehave delay=1 --db " + database_, log);
    EXPECT_EQ(ask(program.port, kSubmit, submission().dump()).json().at("rspCode"), 0);
    EXPECT_EQ(program.end(signal), 0);
    EXPECT_EQ(program.rest(), "");
    std::stringstream logged;
    logged << std::ifstream(log).rdbuf();
    EXPECT_THAT(logged.str(), MatchesRegex("Post /vrdnx/user/sdkJonDiagnose2/\\* 200 rspCode=0 [0-9]+ ms\n"));
    EXPECT_EQ(std::filesystem::status(database_).permissions(), std::filesystem::perms(0600));
    std::filesystem::permissions(database_, std::filesystem::perms(0644));  // as an earlier version left it
  }
  EXPECT_THAT(rows("SELECT COUNT(*), PRAGMA_integrity_check.integrity_check FROM tests, PRAGMA_integrity_check"),
              ElementsAre(ElementsAre("2", "ok")));
}

TEST_F(ServiceProgram, EndsInTimeWhoeverHoldsItsDatabase) {
  Service program("--db " + database_);
  sqlite3* other = nullptr;
  EXPECT_EQ(sqlite3_open(database_.c_str(), &other), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  std::deque<Connection> clients;
  for (int i = 0; i < 3; ++i) {
    clients.emplace_back(program.port).send(requestText("Post", kSubmit, submission().dump()));
  }
  EXPECT_EQ(ask(program.port, "/health", "", "GET").json().at("rspCode"), 0);  // by now they wait, or soon will
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(program.end(SIGTERM), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
  EXPECT_THAT(program.rest(), testing::StartsWith("GET /health 200"));
  sqlite3_close(other);
  EXPECT_EQ(rows("SELECT 1 FROM tests").size(), 0U);
}

TEST_F(ServiceProgram, DoesNotStandStillForALogThatNobodyReads) {
  Service program("");
  for (int i = 0; i < 2000; ++i) ask(program.port, "/health", "", "GET");  // twice what a pipe holds
  EXPECT_EQ(program.end(SIGTERM), 0);
}

TEST_F(ServiceProgram, LogsPersonsOnlyIfAsked) {
  for (const bool isAsked : {false, true}) {
    Service program(isAsked ? "--log-personal" : "");
    ask(program.port, kRegister, profile({{"gender", "5"}, {"phone", "13900000000"}}).dump());
    ask(program.port, "/vrdnx/user/sdkJonDiagnose2/someuser/somekey", submission().dump());
    ask(program.port, "/13800000000", "");
    EXPECT_EQ(program.end(SIGTERM), 0);
    EXPECT_THAT(program.rest(), HasSubstr(" ms: gender is neither 0 nor 1"));
    for (const char* person : {"Li", "13900000000", "someuser", "somekey", "13800000000"}) {
      EXPECT_EQ(program.rest().find(person) != std::string::npos, isAsked) << person << "\n" << program.rest();
    }
  }
}

TEST_F(ServiceProgram, SpeaksTlsAloneWithACertificate) {
  TestAuthority authority;
  const auto [certificate, key] = authority.issue("IP:127.0.0.1");
  Service program("--certificate " + certificate + " --key " + key + " --address 0.0.0.0");
  Connection idle(program.port);  // holds nobody up, not even the end
  EXPECT_EQ(ask(program.port, "/health", "", "GET").status, 0);
  {
    const Environment trusted("SSL_CERT_FILE", authority.certificate().c_str());
    std::promise<URLReply> reply;
    LinuxURLSession session;
    session.dataTask({.url = "https://127.0.0.1:" + std::to_string(program.port) + kHistory,
                      .method = "Post",
                      .headers = {},
                      .body = "sdkKey=k&sdkUseId=u&"},
                     [&](URLReply got) { reply.set_value(std::move(got)); });
    EXPECT_EQ(reply.get_future().get().body, R"({"listenTests":[],"rspCode":0,"rspDesc":"ok"})");
  }
  EXPECT_EQ(program.end(SIGTERM), 0);
}

TEST_F(ServiceProgram, FailsInOneLineAndTellsWrongUsage) {
  HearingService taken;
  TestAuthority authority;
  const std::string none = folder_.path() + "/none/tests.db", text = folder_.write("text", std::string(4096, 'x'));
  const std::string certificate = "--certificate " + authority.issue("IP:127.0.0.1").certificate;
  const std::pair<int, std::string> table[] = {{1, "--port " + std::to_string(taken.port())},
                                               {1, "--db " + none},
                                               {1, "--db " + text},
                                               {1, "--address 192.0.2.1 --allow-plain"},
                                               {1, "--certificate " + text + " --key " + none},
                                               {1, certificate + " --key " + authority.issue("IP:127.0.0.1").key},
                                               {2, "--port 65536"},
                                               {2, "--misbehave well"},
                                               {2, "--address 0.0.0.0"},
                                               {2, "--address localhost"},
                                               {2, "--certificate /dev/null"},
                                               {2, "--key /dev/null"},
                                               {2, "--db ''"},
                                               {2, "extra"}};
  for (const auto& [code, arguments] : table) {
    SCOPED_TRACE(arguments);
    Program program(HEARING_SERVICE " " + arguments + " 2>&1 >/dev/null");
    EXPECT_EQ(program.end(), code);
    EXPECT_THAT(program.rest(), MatchesRegex(code == 1 ? "hearing-service: [^\n]+\n" : ".+"));
  }
  for (const char* asked : {"--help", "--version"}) {
    Program program(std::string(HEARING_SERVICE " ") + asked);
    EXPECT_EQ(program.end(), 0);
    EXPECT_NE(program.rest(), "");
  }
}

}  // namespace
}  // namespace orn::service
