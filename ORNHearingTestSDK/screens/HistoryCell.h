#pragma once

#include <QtCore/QString>

#include <ORNHearingTestSDK/screens/TableCell.h>

namespace orn {

class ORNListenTest;
class TextLabel;

/// One stored test: the score of each ear, the total in a badge, and when it was.
class HistoryCell : public TableCell {
 public:
  static QString identifier() { return QStringLiteral("TTT"); }
  static constexpr int kHeight = 160;

  static constexpr int kRightTag = 1111;
  static constexpr int kLeftTag = 2222;
  static constexpr int kTotalTag = 3333;
  static constexpr int kBadgeTag = 3334;
  static constexpr int kTimeTag = 4444;

  HistoryCell() : TableCell(identifier()) {}

  /// The width is the cell's own; the badge keeps to the right edge of the main screen.
  void setTest(const ORNListenTest& test, int width, int mainScreenWidth);

  /// One of the five labels, made at its first use. Its object name is the tag.
  TextLabel* viewWithTag(int tag);

 private:
  void setText(int tag, const QString& text, const QRectF& frame);
};

}  // namespace orn
