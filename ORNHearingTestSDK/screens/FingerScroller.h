#pragma once

#include <optional>

#include <QtCore/QObject>

class QAbstractScrollArea;
class QPointF;

namespace orn {

/// Scrolls an area by a finger that moves over it, and lets the scrolling run out when the finger leaves. It gets the
/// moves that the area's children leave alone. It lives as long as the area.
class FingerScroller : public QObject {
 public:
  explicit FingerScroller(QAbstractScrollArea* area);

  bool eventFilter(QObject* watched, QEvent* event) override;

  /// Whether a press that began at one point of the screen and is now at the other is no longer a tap.
  static bool isDrag(QPointF from, QPointF to);

 private:
  void follow(double y);
  void letGo();

  QAbstractScrollArea* area_;
  std::optional<double> lastY_;
  double step_ = 0;  ///< The distance between two moves of the finger, smoothed.
  int dragNumber_ = 0;
};

}  // namespace orn
