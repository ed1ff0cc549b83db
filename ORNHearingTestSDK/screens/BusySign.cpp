#include <ORNHearingTestSDK/screens/BusySign.h>

#include <utility>

#include <QtCore/QPointer>
#include <QtGui/QPainter>

#include <ORNHearingTestSDK/platform/Platform.h>
#include <ORNHearingTestSDK/platform/RunLoop.h>
#include <ORNHearingTestSDK/screens/Appearance.h>

namespace orn {
namespace {

constexpr int kSpokes = 12;
constexpr std::chrono::milliseconds kStep{80};

}  // namespace

BusySign::BusySign(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  resize(kSize, kSize);
  hide();
}

void BusySign::waitFor(std::weak_ptr<void> object) {
  object_ = std::move(object);
  ++waits_;
  if (!isHidden()) tell(false);
  if (object_.expired()) return;
  Platform::current().runLoop->performAfterDelay(kPatience, [self = QPointer(this), wait = waits_] {
    if (!self || wait != self->waits_ || self->object_.expired()) return;
    self->tell(true);
    self->turn(wait);
  });
}

void BusySign::turn(int wait) {
  if (wait != waits_) return;
  if (object_.expired()) return tell(false);
  spoke_ = (spoke_ + 1) % kSpokes;
  update();
  Platform::current().runLoop->performAfterDelay(kStep, [self = QPointer(this), wait] {
    if (self) self->turn(wait);
  });
}

void BusySign::tell(bool isShown) {
  setVisible(isShown);
  if (const auto told = onChange) told(isShown);
}

void BusySign::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(width() / 2.0, height() / 2.0);
  for (int spoke = 0; spoke < kSpokes; ++spoke) {
    QColor colour = kAccentColour;
    colour.setAlphaF(1 - 0.9F * static_cast<float>((spoke_ - spoke + kSpokes) % kSpokes) / kSpokes);
    painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap));
    painter.save();
    painter.rotate(360.0 / kSpokes * spoke);
    painter.drawLine(QPointF(0, -4.5), QPointF(0, -8.5));
    painter.restore();
  }
}

}  // namespace orn
