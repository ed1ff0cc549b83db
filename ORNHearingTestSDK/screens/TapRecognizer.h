#pragma once

#include <functional>

#include <QtCore/QObject>
#include <QtCore/QPointF>

class QWidget;

namespace orn {

/// Makes a widget answer a tap, by mouse, finger or key, and show when it has the keyboard. It lives as long as the
/// widget.
class TapRecognizer : public QObject {
 public:
  TapRecognizer(QWidget* widget, std::function<void()> action);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<void()> action_;
  QWidget* focusFrame_;
  bool isPressed_ = false;
  QPointF pressedAt_;
};

}  // namespace orn
