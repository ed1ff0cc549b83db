#pragma once

#include <functional>
#include <memory>

#include <QtCore/QObject>

class QWidget;

namespace orn {

/// Keeps a window that is being closed, by its user or because the program is told to end, open until something has
/// finished, for ten seconds at most. Main thread; it must go before the window.
class ClosingDelay final : public QObject {
 public:
  explicit ClosingDelay(QWidget& window);

  /// Called whenever the window is told to close, before anything else.
  std::function<void()> onClose;
  /// Whether something has still to finish.
  std::function<bool()> isBusy;
  /// Called once, when the window is held.
  std::function<void()> onHeld;

  /// Closes the window if it is held.
  void release();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void hold();

  QWidget& window_;
  bool isHeld_ = false, isReleased_ = false;
  std::shared_ptr<ClosingDelay*> self_;  // held weakly by the call at the end of that time
};

}  // namespace orn
