#include "hearing-app/QuitSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

#include <QtCore/QSocketNotifier>
#include <QtWidgets/QApplication>

namespace orn {
namespace {

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int one : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, one);
  return signals;
}

}  // namespace

void QuitSignals::hold() {
  const sigset_t signals = endingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

QuitSignals::QuitSignals() {
  hold();
  const sigset_t signals = endingSignals();
  signals_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (signals_ < 0) throw std::runtime_error("can't watch for signals");
  notifier_ = std::make_unique<QSocketNotifier>(signals_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
    signalfd_siginfo signal{};
    if (read(signals_, &signal, sizeof(signal)) > 0) QApplication::quit();
  });
}

QuitSignals::~QuitSignals() {
  notifier_.reset();
  close(signals_);
}

}  // namespace orn
