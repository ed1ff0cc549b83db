#include <ORNHearingTestSDK/screens/BusyNotice.h>

#include <QtCore/QEvent>

#include <ORNHearingTestSDK/screens/Appearance.h>
#include <ORNHearingTestSDK/screens/BusySign.h>

namespace orn {
namespace {

constexpr int kWidth = 240, kHeight = 64;

}  // namespace

BusyNotice::BusyNotice(const QString& text, QWidget* parent) : QLabel(text, parent), busy_(new BusySign(this)) {
  setTextFormat(Qt::PlainText);
  setFont(systemFont(15));
  setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
  hide();
  busy_->move((kWidth - BusySign::kSize) / 2, 8);
  busy_->onChange = [this](bool isShown) {
    layOut();
    setVisible(isShown);
  };
  parent->installEventFilter(this);
}

void BusyNotice::waitFor(const std::weak_ptr<void>& object) { busy_->waitFor(object); }

void BusyNotice::layOut() {
  setGeometry((parentWidget()->width() - kWidth) / 2, (parentWidget()->height() - kHeight) / 2, kWidth, kHeight);
}

bool BusyNotice::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::Resize) layOut();
  return false;
}

}  // namespace orn
