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

/// Blocks them, so that only who waits for them gets them. Call it before any other thread is started: each thread
/// inherits this.
inline void holdEndingSignals() {
  const sigset_t ending = endingSignals();
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
}

}  // namespace orn
