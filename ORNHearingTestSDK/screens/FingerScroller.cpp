#include <ORNHearingTestSDK/screens/FingerScroller.h>

#include <chrono>

#include <QtGui/QMouseEvent>
#include <QtGui/QPointingDevice>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>

#include <ORNHearingTestSDK/screens/Animation.h>

namespace orn {
namespace {

constexpr std::chrono::milliseconds kRunOut{700};
constexpr double kRunOutSteps = 12;
constexpr double kSmoothing = 0.4;

}  // namespace

FingerScroller::FingerScroller(QAbstractScrollArea* area) : QObject(area), area_(area) {
  area->viewport()->installEventFilter(this);
}

bool FingerScroller::isDrag(QPointF from, QPointF to) {
  return (to - from).manhattanLength() > QApplication::startDragDistance();
}

bool FingerScroller::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::MouseMove) {
    const auto* move = static_cast<QMouseEvent*>(event);
    if (move->pointingDevice()->type() == QInputDevice::DeviceType::TouchScreen) follow(move->globalPosition().y());
  } else if (event->type() == QEvent::MouseButtonRelease) {
    letGo();
  }
  return false;
}

void FingerScroller::follow(double y) {
  if (!lastY_) {
    ++dragNumber_;
    step_ = 0;
  } else {
    QScrollBar* bar = area_->verticalScrollBar();
    bar->setValue(bar->value() - qRound(y - *lastY_));
    step_ += kSmoothing * (y - *lastY_ - step_);
  }
  lastY_ = y;
}

void FingerScroller::letGo() {
  if (!lastY_) return;
  lastY_.reset();
  const int from = area_->verticalScrollBar()->value();
  animate(area_, kRunOut, [this, from, way = step_ * kRunOutSteps, drag = dragNumber_](double progress) {
    if (drag == dragNumber_) area_->verticalScrollBar()->setValue(from - qRound(way * progress));
  });
}

}  // namespace orn
