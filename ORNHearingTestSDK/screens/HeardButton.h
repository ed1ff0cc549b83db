#pragma once

#include <functional>

#include <QtWidgets/QAbstractButton>

class QTouchEvent;

namespace orn {

/// The large round button for "heard", which can be dragged by its middle. A click counts when it is let go of within
/// the button; space and return click it too. A finger counts whatever other fingers rest elsewhere.
class HeardButton : public QAbstractButton {
 public:
  static constexpr int kSize = 150;

  explicit HeardButton(QWidget* parent);

  /// The pointer has moved within the pressed button, to a point of the parent.
  std::function<void(QPointF)> onDrag;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void touched(const QTouchEvent& event);
  void follow(QPointF position);
};

}  // namespace orn
