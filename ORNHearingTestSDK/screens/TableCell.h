#pragma once

#include <QtCore/QPointF>
#include <QtWidgets/QAbstractButton>

#include <ORNHearingTestSDK/screens/ScreensExport.h>

namespace orn {

/// One row of a TableView, found by its identifier when it is used again for another row. A click selects the row.
class ORN_SCREENS_EXPORT TableCell : public QAbstractButton {
 public:
  explicit TableCell(QString reuseIdentifier);  ///< A cell for one kind of rows.

  const QString& reuseIdentifier() const { return reuseIdentifier_; }  ///< The kind of rows.

  bool isSelected() const { return isSelected_; }  ///< Whether it is drawn as chosen.
  void setSelected(bool isSelected);               ///< Draws it so.

  /// Without it a cell takes no clicks. It looks as it did and keeps the keyboard.
  bool isUserInteractionEnabled() const { return isUserInteractionEnabled_; }
  /// Whether it takes clicks and keys.
  void setUserInteractionEnabled(bool isEnabled) { isUserInteractionEnabled_ = isEnabled; }

  /// The mark at the right edge of a row that opens something.
  void setDisclosureMark(bool isShown) { hasDisclosureMark_ = isShown; }
  void setCornerRadius(int radius) { cornerRadius_ = radius; }  ///< Rounds its corners, in points.

 protected:
  void paintEvent(QPaintEvent* event) override;       ///< Qt's; handled here.
  void keyPressEvent(QKeyEvent* event) override;      ///< Qt's; handled here.
  void mousePressEvent(QMouseEvent* event) override;  ///< Qt's; handled here.
  void mouseMoveEvent(QMouseEvent* event) override;   ///< Qt's; handled here.

 private:
  void paintDisclosureMark(QPainter& painter) const;

  QString reuseIdentifier_;
  bool isSelected_ = false;
  bool isUserInteractionEnabled_ = true;
  bool hasDisclosureMark_ = false;
  int cornerRadius_ = 0;
  QPointF pressedAt_;
};

}  // namespace orn
