#pragma once

#include <QtGui/QPainter>
#include <QtWidgets/QLabel>

#include <ORNHearingTestSDK/screens/Appearance.h>

namespace orn {

/// A coloured band with white text over a section of a table.
class SectionHeading : public QLabel {
 public:
  static constexpr int kHeight = 44;

  SectionHeading(const QString& text, const QColor& ground) : QLabel(text), ground_(ground) { setFont(systemFont(18)); }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), ground_);
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter, text());
  }

 private:
  QColor ground_;
};

}  // namespace orn
