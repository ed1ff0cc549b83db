#include "hearing-app/QuitSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <stdexcept>

#include <QtCore/QSocketNotifier>
#include <QtWidgets/QApplication>

#include <ORNHearingTestSDK/screens/NavigationWindow.h>

#include "EndingSignals.h"

namespace orn {
QuitSignals::QuitSignals() {
  const sigset_t ending = endingSignals();
  signals_ = signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);
  if (signals_ < 0) throw std::runtime_error("can't watch for signals");
  notifier_ = std::make_unique<QSocketNotifier>(signals_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
    signalfd_siginfo signal{};
    if (read(signals_, &signal, sizeof(signal)) <= 0) return;
    for (QWidget* one : QApplication::topLevelWidgets()) {
      if (auto* window = dynamic_cast<NavigationWindow*>(one)) window->setClosesUnasked(true);
    }
    QApplication::quit();
  });
}

QuitSignals::~QuitSignals() {
  notifier_.reset();
  close(signals_);
}

}  // namespace orn
