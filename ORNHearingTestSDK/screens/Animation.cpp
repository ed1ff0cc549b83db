#include <ORNHearingTestSDK/screens/Animation.h>

#include <algorithm>
#include <memory>
#include <utility>

#include <QtCore/QEasingCurve>
#include <QtCore/QPointer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QWidget>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>

namespace orn {
namespace {

constexpr std::chrono::milliseconds kFrame{16};

struct Run {
  QPointer<QWidget> widget;
  std::chrono::nanoseconds start;
  std::chrono::nanoseconds duration;
  std::function<void(double)> step;
  std::function<void()> completion;
};

void showFrame(const std::shared_ptr<Run>& run) {
  if (!run->widget) return;
  RunLoop& loop = *Platform::current().runLoop;
  const auto passed = loop.now() - run->start;
  const double progress =
      std::min(static_cast<double>(passed.count()) / static_cast<double>(run->duration.count()), 1.0);
  run->step(QEasingCurve(QEasingCurve::OutCubic).valueForProgress(progress));
  if (progress < 1) {
    loop.performAfterDelay(std::min<std::chrono::nanoseconds>(kFrame, run->duration - passed),
                           [run] { showFrame(run); });
  } else if (run->completion) {
    run->completion();
  }
}

}  // namespace

void animate(QWidget* widget, std::chrono::milliseconds duration, std::function<void(double progress)> step,
             std::function<void()> completion) {
  showFrame(std::make_shared<Run>(
      Run{widget, Platform::current().runLoop->now(), duration, std::move(step), std::move(completion)}));
}

QWidget* makePicture(QWidget* widget) {
  auto* picture = new QLabel(widget->parentWidget());
  picture->setAttribute(Qt::WA_TransparentForMouseEvents);
  picture->setPixmap(widget->grab());
  picture->setGeometry(widget->geometry());
  picture->show();
  return picture;
}

}  // namespace orn
