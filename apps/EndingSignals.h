#pragma once

#include <csignal>

namespace orn {

/// The signals by which a program is asked to end.
inline sigset_t endingSignals() {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int one : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ending, one);
  return ending;
}

/// Leaves them to whoever waits for them. To be called before any other thread is started, which all follow suit.
inline void holdEndingSignals() {
  const sigset_t ending = endingSignals();
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
}

}  // namespace orn
