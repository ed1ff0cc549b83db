#pragma once

#include <QtGui/QColor>
#include <QtWidgets/QLabel>

#include <ORNHearingTestSDK/screens/AttributedText.h>

namespace orn {

/// A text in a frame, in the middle of its height. One that is higher than the frame reaches over it evenly and is not
/// cut off.
class TextLabel : public QLabel {
 public:
  explicit TextLabel(QWidget* parent);

  void setAttributedText(const AttributedText& text, Qt::Alignment alignment = Qt::AlignLeft);

  /// One colour, one font, no line spacing.
  void setPlainText(const QString& text, const QFont& font, const QColor& color, Qt::Alignment alignment);

  void setFrame(const QRectF& frame);

  /// A ground in the frame, its corners rounded.
  void setGround(const QColor& color, int cornerRadius = 0);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void spread();

  AttributedText text_;
  Qt::Alignment alignment_ = Qt::AlignLeft;
  QRectF frame_;
  QColor ground_ = Qt::transparent;
  int cornerRadius_ = 0;
};

}  // namespace orn
