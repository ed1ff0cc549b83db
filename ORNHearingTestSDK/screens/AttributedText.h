#pragma once

#include <vector>

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>

#include <ORNHearingTestSDK/screens/ScreensExport.h>

class QPainter;

namespace orn {

/// A text with one font, line spacing and kern for all of it and colours for its parts. Lengths are in points. Main
/// thread.
class ORN_SCREENS_EXPORT AttributedText {
 public:
  AttributedText() = default;

  /// `lineSpace` is put between two lines, `kern` behind every character.
  AttributedText(QString text, double lineSpace, double kern, const QFont& font);

  const QString& text() const { return text_; }  ///< Without its attributes.

  /// Colours a part of the text, over what it was coloured before; what no part covers is black.
  void addColor(const QColor& color, qsizetype from, qsizetype length);

  /// The size that the text takes when its lines are at most that wide; zero for an empty text.
  QSizeF boundingSize(double width) const;

  /// Draws the lines from the rectangle's top on, within its width; left, right or centred.
  void draw(QPainter& painter, const QRectF& rect, Qt::Alignment alignment = Qt::AlignLeft) const;

 private:
  struct ColoredPart {
    QColor color;
    qsizetype from, length;
  };

  QString text_;
  double lineSpace_ = 0;
  QFont font_;
  std::vector<ColoredPart> parts_;
};

}  // namespace orn
