#include "hearing-app/ClosingDelay.h"

#include <chrono>
#include <utility>

#include <QtCore/QEvent>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {
namespace {

constexpr std::chrono::seconds kLongestDelay{10};

}  // namespace

ClosingDelay::ClosingDelay(QWidget& window) : window_(window), self_(std::make_shared<ClosingDelay*>(this)) {
  window.installEventFilter(this);
}

bool ClosingDelay::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &window_ || event->type() != QEvent::Close) return QObject::eventFilter(watched, event);
  onClose();
  if (isReleased_ || !isBusy()) return false;
  event->ignore();
  if (!std::exchange(isHeld_, true)) hold();
  return true;
}

void ClosingDelay::hold() {
  onHeld();
  Platform::current().runLoop->performAfterDelay(kLongestDelay, [weak = std::weak_ptr(self_)] {
    if (const auto self = weak.lock()) (*self)->release();
  });
}

void ClosingDelay::release() {
  if (!isHeld_ || std::exchange(isReleased_, true)) return;
  window_.close();
}

}  // namespace orn
