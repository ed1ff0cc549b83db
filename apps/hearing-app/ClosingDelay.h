#pragma once

#include <functional>
#include <memory>

#include <QtCore/QObject>

class QWidget;

namespace orn {

/// Holds a window that is being closed, by its user or as the program is told to end, for as long as something has to
/// come to its end first, and for ten seconds at most. Main thread; gone before the window.
class ClosingDelay final : public QObject {
 public:
  explicit ClosingDelay(QWidget& window);

  /// Called whenever the window is told to close, before anything else.
  std::function<void()> onClose;
  /// Whether something is under way.
  std::function<bool()> isBusy;
  /// Called once, when the window is held.
  std::function<void()> onHeld;

  /// Closes the window that was held, and does nothing to another one.
  void release();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void hold();

  QWidget& window_;
  bool isHeld_ = false, isReleased_ = false;
  std::shared_ptr<ClosingDelay*> self_;  // what the call at the end of the time looks for
};

}  // namespace orn
