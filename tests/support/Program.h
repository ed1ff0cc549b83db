#pragma once

#include <sys/wait.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>

namespace orn {

/// A program as a child process. It ends with this object at the latest, and with the test whatever becomes of it.
class Program {
 public:
  /// Starts a command of the shell: one program with its arguments, and what becomes of its two outputs. What goes to
  /// the first of them can be read here.
  explicit Program(const std::string& command)
      : said_(popen(("echo $$; exec setpriv --pdeathsig KILL " + command).c_str(), "r")) {
    if (!said_) throw std::runtime_error("can't start " + command);
    process_ = std::stoi(line());
  }
  ~Program() {
    if (said_) end(SIGKILL);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  pid_t process() const { return process_; }

  /// The next line of what it says; empty if there is none to come.
  std::string line() {
    std::array<char, 4096> buffer{};
    return fgets(buffer.data(), buffer.size(), said_) ? buffer.data() : "";
  }

  /// Waits for its end, which a signal may bring about. The exit status; -1 if a signal ended it. Nobody reads what it
  /// says meanwhile, so that a program that waits for its reader is found out.
  int end(int signal = 0) {
    if (signal != 0) kill(process_, signal);
    waitid(P_PID, static_cast<id_t>(process_), nullptr, WEXITED | WNOWAIT);
    for (std::string one = line(); !one.empty(); one = line()) rest_ += one;
    const int status = pclose(std::exchange(said_, nullptr));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  /// What it said last, that was not read before its end.
  const std::string& rest() const { return rest_; }

 private:
  FILE* said_;
  pid_t process_ = 0;
  std::string rest_;
};

}  // namespace orn
