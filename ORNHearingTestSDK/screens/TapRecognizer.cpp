#include <ORNHearingTestSDK/screens/TapRecognizer.h>

#include <utility>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/FingerScroller.h>

namespace orn {
namespace {

class FocusFrame : public QWidget {
 public:
  explicit FocusFrame(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    drawFocusFrame(painter, rect(), 4);
  }
};

}  // namespace

TapRecognizer::TapRecognizer(QWidget* widget, std::function<void()> action)
    : QObject(widget), action_(std::move(action)), focusFrame_(new FocusFrame(widget)) {
  widget->setFocusPolicy(Qt::StrongFocus);
  widget->installEventFilter(this);
}

bool TapRecognizer::eventFilter(QObject* watched, QEvent* event) {
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
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::Resize:
      focusFrame_->setGeometry(static_cast<QWidget*>(watched)->rect());
      focusFrame_->raise();
      if (event->type() != QEvent::Resize) focusFrame_->setVisible(event->type() == QEvent::FocusIn);
      return false;
    default:
      return false;
  }
}

}  // namespace orn
