#pragma once

#include <QtWidgets/QLabel>

#include <ORNHearingTestSDK/screens/Appearance.h>

namespace orn {

/// A coloured band with white text over a section of a table.
class SectionHeading : public QLabel {
 public:
  static constexpr int kHeight = 44;

  SectionHeading(const QString& text, const QColor& ground) : QLabel(text) {
    QPalette colours;
    colours.setColor(QPalette::Window, ground);
    colours.setColor(QPalette::WindowText, Qt::white);
    setPalette(colours);
    setBackgroundRole(QPalette::Window);  // a table's children take after its viewport otherwise
    setForegroundRole(QPalette::WindowText);
    setAutoFillBackground(true);
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setFont(systemFont(18));
  }
};

}  // namespace orn
