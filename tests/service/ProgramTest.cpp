#include <array>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/service/ClientAndService.h"

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
    close(out[1]);
    close(error[1]);
    out_ = fdopen(out[0], "r");
    error_ = fdopen(error[0], "r");
  }

  ~Program() {
    if (process_ > 0) end(SIGKILL);
    fclose(out_);
    fclose(error_);
  }

  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  std::string line() { return lineOf(out_); }
  std::string errorLine() { return lineOf(error_); }

  /// The exit status; -1 if a signal ended the program.
  int end(int signal = 0) {
    int status = 0;
    if (signal != 0) kill(process_, signal);
    waitpid(process_, &status, 0);
    process_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  static std::string lineOf(FILE* stream) {
    std::array<char, 4096> buffer{};
    return fgets(buffer.data(), buffer.size(), stream) ? buffer.data() : "";
  }

  pid_t process_ = 0;
  FILE *out_ = nullptr, *error_ = nullptr;
};

struct ServiceProgram : ServiceTest {
  ServiceProgram() { service_.reset(); }
  std::string database() const { return folder_ / "tests.db"; }
};

std::uint16_t portOf(Program& program) { return static_cast<std::uint16_t>(std::stoi(program.line())); }

TEST_F(ServiceProgram, AnswersUntilASignalEndsItAndKeepsItsDatabase) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Program program({"--port", "0", "--print-port", "--db", database()});
    EXPECT_EQ(ask(portOf(program), kSubmit, submission().dump()).json().at("rspCode"), 0);
    EXPECT_EQ(program.end(signal), 0);
    EXPECT_EQ(program.line(), "");
    EXPECT_EQ(program.errorLine(), "");
  }
  EXPECT_THAT(rows("SELECT COUNT(*), PRAGMA_integrity_check.integrity_check FROM tests, PRAGMA_integrity_check"),
              ElementsAre(ElementsAre("2", "ok")));
}

TEST_F(ServiceProgram, Misbehaves) {
  Program program({"--print-port", "--misbehave", "status500"});
  EXPECT_EQ(ask(portOf(program), kHistory, "sdkKey=k&sdkUseId=u").status, 500);
  EXPECT_EQ(program.end(SIGTERM), 0);
}

TEST_F(ServiceProgram, FailsInOneLine) {
  HearingService taken;
  const std::string noFolder = folder_ / "none" / "tests.db", noDatabase = folder_ / "text";
  EXPECT_EQ(std::system(("head -c 4096 /dev/zero | tr '\\0' x > " + noDatabase).c_str()), 0);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--port", std::to_string(taken.port())}, {"--db", noFolder}, {"--db", noDatabase}}) {
    Program program(arguments);
    EXPECT_EQ(program.line(), "");
    EXPECT_THAT(program.errorLine(), testing::MatchesRegex("hearing-service: .+\n"));
    EXPECT_EQ(program.errorLine(), "");
    EXPECT_EQ(program.end(), 1);
  }
}

TEST_F(ServiceProgram, TellsWrongUsage) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--port", "65536"},
                                                    {"--port", "-1"},
                                                    {"--port", "x"},
                                                    {"--misbehave", "well"},
                                                    {"--misbehave", ""},
                                                    {"--host", "0.0.0.0"},
                                                    {"extra"},
                                                    {"--db"}}) {
    Program program(arguments);
    EXPECT_EQ(program.line(), "");
    EXPECT_NE(program.errorLine(), "");
    EXPECT_EQ(program.end(), 2) << arguments.front();
  }
  Program help({"--help"});
  EXPECT_NE(help.line(), "");
  EXPECT_EQ(help.end(), 0);
}

}  // namespace
}  // namespace orn::service
