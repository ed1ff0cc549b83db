#pragma once

#include <QtWidgets/QAbstractButton>

#include <ORNHearingTestSDK/screens/AttributedText.h>

namespace orn {

/// A button that is its text, of any number of lines, centred.
class AttributedButton : public QAbstractButton {
 public:
  AttributedButton(const AttributedText& text, QWidget* parent);

  void setCornerRadius(int radius) { cornerRadius_ = radius; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  AttributedText text_;
  int cornerRadius_ = 0;
};

}  // namespace orn
