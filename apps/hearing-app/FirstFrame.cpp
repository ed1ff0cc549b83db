#include "hearing-app/FirstFrame.h"

#include <utility>

#include <QtCore/QEvent>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

namespace orn {
namespace {

/// A window paints itself when it is exposed, which not every window system does at once.
class Exposure : public QObject {
 public:
  Exposure(QWindow& window, std::function<void()> action) : QObject(&window), action_(std::move(action)) {
    window.installEventFilter(this);
    if (window.isExposed()) happen();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed()) happen();
    return QObject::eventFilter(watched, event);
  }

 private:
  /// The action comes after the event that is under way.
  void happen() {
    if (!action_) return;
    QTimer::singleShot(0, parent(), std::exchange(action_, nullptr));
    deleteLater();
  }

  std::function<void()> action_;
};

}  // namespace

void afterFirstFrame(QWidget& window, std::function<void()> action) {
  new Exposure(*window.windowHandle(), std::move(action));
}

}  // namespace orn
