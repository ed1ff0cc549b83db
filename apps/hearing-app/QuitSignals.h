#pragma once

#include <memory>

class QSocketNotifier;

namespace orn {

/// Makes SIGINT, SIGTERM and SIGHUP end the event loop, as closing the window does, so that whatever a test has
/// changed, the volume above all, is put back. Call holdEndingSignals() first of all.
class QuitSignals {
 public:
  /// Needs the QApplication, and must go before it.
  QuitSignals();
  ~QuitSignals();
  QuitSignals(const QuitSignals&) = delete;
  QuitSignals& operator=(const QuitSignals&) = delete;

 private:
  int signals_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace orn
