#pragma once

#include <optional>

#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtWidgets/QLabel>

#include <ORNHearingTestSDK/screens/AttributedText.h>

namespace orn {

/// A text in a frame, in the middle of its height. A text that is higher than the frame extends evenly beyond it and is
/// not cut off; so does a single line that is wider, up to the edges of the parent, where it is cut off with dots.
class TextLabel : public QLabel {
 public:
  explicit TextLabel(QWidget* parent);

  void setAttributedText(const AttributedText& text, Qt::Alignment alignment = Qt::AlignLeft);

  /// One line, one colour, one font.
  void setPlainText(const QString& text, const QFont& font, const QColor& color, Qt::Alignment alignment);

  void setFrame(const QRectF& frame);

  /// A ground in the frame, its corners rounded.
  void setGround(const QColor& color, int cornerRadius = 0);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void showText(const AttributedText& text, const QString& spoken, Qt::Alignment alignment);
  void spread();
  QRectF fitLine();

  /// What a single line is made of, before it is cut off.
  struct Line {
    QString text;
    QFont font;
    QColor color;
  };

  AttributedText text_;
  std::optional<Line> line_;
  Qt::Alignment alignment_ = Qt::AlignLeft;
  QRectF frame_, textFrame_;
  QColor ground_ = Qt::transparent;
  int cornerRadius_ = 0;
};

}  // namespace orn
