#include "hearing-test/TerminalInput.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "EndingSignals.h"

namespace orn {
TerminalInput::TerminalInput(std::shared_ptr<RunLoop> loop)
    : loop_(std::move(loop)), self_(std::make_shared<TerminalInput*>(this)) {
  const sigset_t signals = endingSignals();
  signals_ = signalfd(-1, &signals, SFD_CLOEXEC);
  end_ = eventfd(0, EFD_CLOEXEC);
  if (signals_ < 0 || end_ < 0) throw std::runtime_error("can't watch for signals");
  termios terminal{};
  if (tcgetattr(STDIN_FILENO, &terminal) == 0) {
    before_ = terminal;
    terminal.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &terminal);
  }
  thread_ = std::thread([this] { watch(); });
}

TerminalInput::~TerminalInput() {
  self_.reset();
  const std::uint64_t once = 1;
  if (write(end_, &once, sizeof(once)) < 0) std::terminate();  // can't fail: the counter is at 0
  thread_.join();
  if (before_) tcsetattr(STDIN_FILENO, TCSANOW, &*before_);
  close(signals_);
  close(end_);
}

void TerminalInput::tell(std::function<void()> TerminalInput::*what) {
  loop_->dispatchAsync([weak = std::weak_ptr(self_), what] {
    const auto self = weak.lock();
    if (self && (**self).*what) ((**self).*what)();
  });
}

void TerminalInput::watch() {
  std::array<pollfd, 3> sources{{{end_, POLLIN, 0}, {signals_, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
  while (poll(sources.data(), sources.size(), -1) >= 0 || errno == EINTR) {
    if (sources[0].revents != 0) return;
    if (signalfd_siginfo signal{}; sources[1].revents != 0 && read(signals_, &signal, sizeof(signal)) > 0) {
      tell(&TerminalInput::onInterrupt);
    }
    if (sources[2].revents == 0) continue;
    if (char key = 0; read(STDIN_FILENO, &key, 1) == 1) {
      tell(&TerminalInput::onKey);
    } else {
      sources[2].fd = -1;  // the end of the input
    }
  }
}

}  // namespace orn
