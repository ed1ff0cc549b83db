#include <ORNHearingTestSDK/screens/TapRecognizer.h>

#include <utility>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/FingerScroller.h>

namespace orn {

TapRecognizer::TapRecognizer(QWidget* widget, std::function<void()> action)
    : QObject(widget), action_(std::move(action)) {
  widget->setFocusPolicy(Qt::StrongFocus);
  widget->installEventFilter(this);
}

bool TapRecognizer::eventFilter(QObject* /*watched*/, QEvent* event) {
  const auto action = action_;  // a copy, since it may take the widget away
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      isPressed_ = static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
      pressedAt_ = static_cast<QMouseEvent*>(event)->globalPosition();
      return true;
    case QEvent::MouseButtonRelease: {
      const QPointF place = static_cast<QMouseEvent*>(event)->globalPosition();
      if (std::exchange(isPressed_, false) && !FingerScroller::isDrag(pressedAt_, place)) {
        action();
        return true;
      }
      event->ignore();  // the end of a drag is for what scrolls
      return false;
    }
    case QEvent::KeyPress: {
      const auto* key = static_cast<QKeyEvent*>(event);
      const bool isTap = key->key() == Qt::Key_Space || key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
      if (isTap && !key->isAutoRepeat()) action();
      return isTap;
    }
    default:
      return false;
  }
}

}  // namespace orn
