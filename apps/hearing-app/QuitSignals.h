#pragma once

#include <memory>

class QSocketNotifier;

namespace orn {

/// Makes SIGINT, SIGTERM and SIGHUP end the event loop, as closing the window does, so that whatever a test has
/// changed, the volume above all, is put back. The other threads leave these signals to it.
class QuitSignals {
 public:
  /// To be called before any other thread is started.
  static void hold();

  /// Needs the QApplication, and goes before it.
  QuitSignals();
  ~QuitSignals();
  QuitSignals(const QuitSignals&) = delete;
  QuitSignals& operator=(const QuitSignals&) = delete;

 private:
  int signals_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace orn
