#include "simulation/studies/WorkerProcesses.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>

namespace orn::simulation {
namespace {

/// Precedes each result in the pipe.
struct Head {
  std::uint64_t index = 0;
  std::uint32_t size = 0;
  std::uint32_t isFailure = 0;
};

bool writeWhole(int pipe, const void* from, std::size_t size) {
  const char* at = static_cast<const char*>(from);
  while (size > 0) {
    const ssize_t written = ::write(pipe, at, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    at += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

bool send(int pipe, std::size_t index, const std::string& text, bool isFailure) {
  const Head head{index, static_cast<std::uint32_t>(text.size()), isFailure};
  return writeWhole(pipe, &head, sizeof head) && writeWhole(pipe, text.data(), text.size());
}

class Worker {
 public:
  Worker(std::size_t first, std::size_t step, std::size_t count, const std::function<std::string(std::size_t)>& job) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe for a worker process");
    process_ = fork();
    if (process_ == 0) work(ends[1], first, step, count, job);
    close(ends[1]);
    pipe_ = ends[0];
    if (process_ < 0) {
      close(pipe_);
      throw std::runtime_error("no worker process");
    }
  }
  ~Worker() {
    close(pipe_);
    kill(process_, SIGKILL);  // nobody waits for one that still works
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  bool isWorking() const { return isOpen_; }
  int readEnd() const { return isOpen_ ? pipe_ : -1; }

  /// Takes in what there is to read.
  void read(std::vector<std::optional<std::string>>& results) {
    std::array<char, 65536> room{};
    const ssize_t count = ::read(pipe_, room.data(), room.size());
    if (count < 0 && errno == EINTR) return;
    isOpen_ = count > 0;
    if (count > 0) read_.append(room.data(), static_cast<std::size_t>(count));
    takeResults(results);
  }

 private:
  [[noreturn]] static void work(int pipe, std::size_t first, std::size_t step, std::size_t count,
                                const std::function<std::string(std::size_t)>& job) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (std::size_t index = first; index < count; index += step) {
      try {
        if (!send(pipe, index, job(index), false)) _exit(1);
      } catch (const std::exception& error) {
        send(pipe, index, error.what(), true);
        _exit(1);
      }
    }
    _exit(0);
  }

  void takeResults(std::vector<std::optional<std::string>>& results) {
    std::size_t at = 0;
    for (Head head; read_.size() - at >= sizeof head; at += sizeof head + head.size) {
      std::memcpy(&head, read_.data() + at, sizeof head);
      if (read_.size() - at - sizeof head < head.size) break;
      std::string text = read_.substr(at + sizeof head, head.size);
      if (head.isFailure) throw std::runtime_error(text);
      results.at(head.index) = std::move(text);
    }
    read_.erase(0, at);
  }

  pid_t process_ = -1;
  int pipe_ = -1;
  bool isOpen_ = true;
  std::string read_;
};

}  // namespace

std::vector<std::string> inWorkerProcesses(std::size_t count, std::size_t workers,
                                           const std::function<std::string(std::size_t)>& job) {
  workers = std::clamp<std::size_t>(workers, 1, std::max<std::size_t>(count, 1));
  std::fflush(nullptr);  // or each worker would write what is still buffered
  std::vector<std::unique_ptr<Worker>> all;
  for (std::size_t i = 0; i < workers; ++i) all.push_back(std::make_unique<Worker>(i, workers, count, job));
  std::vector<std::optional<std::string>> results(count);
  std::vector<pollfd> pipes(workers);
  while (std::any_of(all.begin(), all.end(), [](const auto& worker) { return worker->isWorking(); })) {
    for (std::size_t i = 0; i < workers; ++i) pipes[i] = {all[i]->readEnd(), POLLIN, 0};
    poll(pipes.data(), pipes.size(), -1);
    for (std::size_t i = 0; i < workers; ++i) {
      if (pipes[i].revents != 0) all[i]->read(results);
    }
  }
  std::vector<std::string> whole;
  for (auto& result : results) {
    if (!result) throw std::runtime_error("a worker process ended early");
    whole.push_back(std::move(*result));
  }
  return whole;
}

std::size_t availableCores() {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  if (sched_getaffinity(0, sizeof cores, &cores) != 0) return 1;
  return std::max<std::size_t>(1, static_cast<std::size_t>(CPU_COUNT(&cores)));
}

}  // namespace orn::simulation
