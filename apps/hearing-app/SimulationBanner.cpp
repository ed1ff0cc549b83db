#include "hearing-app/SimulationBanner.h"

#include <QtCore/QEvent>
#include <QtCore/QTimer>

#include <ORNHearingTestSDK/screens/NavigationWindow.h>
#include <ORNHearingTestSDK/screens/ORNScreenUtils.h>

namespace orn {
namespace {

constexpr int kHeight = 26;

}  // namespace

SimulationBanner::SimulationBanner(NavigationWindow& window) : QLabel(&window) {
  setText(QStringLiteral("模拟演示 · 不是真实的听力测试"));
  setFont(ORNScreenUtils::systemFontOfSize(13));
  setAlignment(Qt::AlignCenter);
  setStyleSheet(QStringLiteral("background: #fc6400; color: white;"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setGeometry(0, 0, window.width(), kHeight);
  window.setStatusBarHeight(kHeight);
  window.installEventFilter(this);
}

/// Stays on top of whatever is added to the window.
bool SimulationBanner::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) resize(parentWidget()->width(), kHeight);
  if (event->type() == QEvent::ChildAdded) QTimer::singleShot(0, this, &QWidget::raise);
  return QLabel::eventFilter(watched, event);
}

}  // namespace orn
